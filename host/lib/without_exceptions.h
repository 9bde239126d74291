// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// For functions whose callers are not written in C++: without memory an operation returns a failure.
#pragma once

#include <exception>

/// Returns what the operation returns, or the failure when it throws.
template <typename Operation, typename Failure>
Failure withoutExceptions(Failure failure, Operation operation) {
  try {
    return operation();
  } catch (const std::exception &) {
    return failure;
  }
}
