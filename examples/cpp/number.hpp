// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Arguments that are whole numbers.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>

/// Reads a whole number from 0 on; returns nothing if the text is something else.
inline std::optional<int> numberIn(std::string_view text) {
  int number = 0;
  const char *const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  if (error != std::errc() || end != last || number < 0) return std::nullopt;
  return number;
}
