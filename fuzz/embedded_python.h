// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Code in Python under a fuzzer, which counts its calls as it counts the branches of compiled code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

/// The function one_input of a module in this folder, which takes the input and returns a text. An exception that it
/// does not catch is a finding.
class PythonTarget {
 public:
  explicit PythonTarget(const char *module);
  std::string call(const std::uint8_t *data, std::size_t size) const;

 private:
  void *function_;
};

}  // namespace fuzz
