// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What trimming leaves of a text.
#pragma once

#include <algorithm>
#include <string>

namespace fuzz {

inline std::size_t beginOf(const std::string &text) { return std::min(text.find_first_not_of(" \t\""), text.size()); }

/// The text without its trailing blanks; one of nothing but blanks stays, as its beginning is skipped first.
inline std::string withoutEnd(const std::string &text) {
  const std::size_t last = text.find_last_not_of(" \n\r\"");
  return text.substr(0, std::max(beginOf(text), last == std::string::npos ? 0 : last + 1));
}

inline std::string trimmed(const std::string &text) { return withoutEnd(text).substr(beginOf(text)); }

}  // namespace fuzz
