// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How much a torture test does, and where its figures go.
#pragma once

#include <string>

namespace torture {

/// Returns the first number in `./dev test` and the second in `./dev torture`.
int times(int in_tests, int thorough);

/// Adds a line to the figures that `./dev torture` prints at its end, such as "calls: 4753 failing calls, 0 crashes".
void report(const std::string &figure);

}  // namespace torture
