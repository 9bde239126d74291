// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Texts from devices, made fit for a terminal. A device may call itself anything: escape sequences, line ends, bytes
// that are not UTF-8, characters that reverse the line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace usbdevctl {

/// The text with everything that is not plainly visible written as \xHH (bytes) or \uHHHH (characters), and the
/// backslash doubled, so that two different texts never look the same.
std::string printable(std::string_view text);

/// The text with what is hidden in it written as by printable, and the backslash left alone: for a message, parts of
/// which are printable already.
std::string withoutHidden(std::string_view text);

/// Terminal columns that a printable text takes.
std::size_t displayWidth(std::string_view text);

/// The text, or as much of it as fits with an ellipsis after it.
std::string cutToWidth(const std::string &text, std::size_t columns);

/// A text field of a record, up to its zero byte or its end.
template <std::size_t Size>
std::string fieldText(const char (&field)[Size]) {
  std::string_view whole(field, Size);
  return std::string(whole.substr(0, whole.find('\0')));
}

}  // namespace usbdevctl
