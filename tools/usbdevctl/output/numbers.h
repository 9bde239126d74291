// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Numbers of channels, profiles and nodes, where the library has -1 for none.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

namespace usbdevctl {

/// Nothing for a text that is not a number as a whole.
inline std::optional<int> readNumber(std::string_view text) {
  int number = 0;
  const char *end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

inline std::optional<int> numberUnlessNone(int number) {
  return number == -1 ? std::nullopt : std::optional<int>(number);
}

inline std::string numberText(std::optional<int> number) { return number ? std::to_string(*number) : "none"; }

inline std::string numberText(int number) { return numberText(numberUnlessNone(number)); }

}  // namespace usbdevctl
