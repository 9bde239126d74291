// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How the file stores values: ordinary text unchanged, and what XML cannot contain or readers trim (control
// characters, line ends, bytes that are not UTF-8, blanks at either end) as \xHH, so that every value is read back byte
// for byte. A backslash is written \x5c; a backslash that is not followed by x and two digits is read as itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace xmlcfg {

/// A caller's buffer, filled up to its size; the length is that of the whole text.
struct BoundedText {
  char *buffer;
  std::size_t size;
  std::size_t length = 0;

  BoundedText(char *to_fill, std::size_t room) : buffer(to_fill), size(room) {}

  void append(char byte) {
    if (length < size) buffer[length] = byte;
    ++length;
  }
};

std::string toReadable(std::string_view value);

/// Appends the value that a stored text has. Allocates no memory, so that a value can always be read.
void appendFromReadable(std::string_view text, BoundedText &value);

}  // namespace xmlcfg
