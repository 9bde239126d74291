// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The standard streams take missing memory, or a failed read, for the end of the text. With this they throw instead.
#pragma once

#include <ios>
#include <sstream>
#include <string>

namespace usbdevctl {

inline void throwOnFailure(std::ios &stream) { stream.exceptions(std::ios::badbit); }

inline std::istringstream readerOf(const std::string &text) {
  std::istringstream reader(text);
  throwOnFailure(reader);
  return reader;
}

}  // namespace usbdevctl
