// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Bounded text: copying, formatting and reading numbers, always within the destination's own size.
#pragma once

#include <cstddef>
#include <cstring>

namespace usbdev {

/// An array that text goes into, together with its size.
struct TextBuffer {
  template <std::size_t N>
  TextBuffer(char (&array)[N]) : start(array), size(N) {}  // implicit: every array is one
  /// A caller's buffer, whose size the public header states.
  TextBuffer(char *buffer, std::size_t buffer_size) : start(buffer), size(buffer_size) {}

  char *start;
  std::size_t size;
};

/// Copies text into an array, cut to what fits.
void copyText(TextBuffer out, const char *text);

/// Copies the first `length` bytes of a text into a caller's buffer and terminates it.
void copyCut(char *out, const char *text, std::size_t length);

/// printf into an array, cut to what fits; false when something was cut.
__attribute__((format(printf, 2, 3))) bool formatText(TextBuffer out, const char *pattern, ...);

/// Appends a number, formatted by a pattern, to the text in an array, cut to what fits.
void appendNumber(TextBuffer out, const char *pattern, int number);

inline bool isSame(const char *a, const char *b) { return std::strcmp(a, b) == 0; }
inline bool contains(const char *text, const char *part) { return std::strstr(text, part) != nullptr; }
inline bool startsWith(const char *text, const char *start) {
  return std::strncmp(text, start, std::strlen(start)) == 0;
}

/// True when a fixed field of a caller's record is terminated within its array.
template <std::size_t N>
bool isTerminated(const char (&field)[N]) {
  return strnlen(field, N) < N;
}

/// Reads a decimal integer as atoi does; what does not fit an int is cut to its range.
int toInt(const char *text);

/// Cuts a text at its first line feed.
void cutAtLineFeed(char *text);

/// Cuts blanks, line ends and double quotes from the end of a text; returns its start without leading blanks, tabs and
/// double quotes.
char *trim(char *text);

/// Removes a character from a text, and cuts the rest to 63 characters.
void removeAll(char *text, char removed);

/// The two trimmed sides of a line cut at a separator; they point into the line.
struct Pair {
  char *left = nullptr;
  char *right = nullptr;
  explicit operator bool() const { return left != nullptr; }
};

/// Cuts a line in place at the first separator; tests false, the line untouched, where there is none.
Pair splitPair(char *line, const char *separator);

/// Prepares a text for use inside a JSON string. The size of its buffer is 1 to 1024, otherwise the text is unchanged
/// and the result false. False also when the result does not fit; the text is then not terminated.
bool escapeJson(TextBuffer text);

}  // namespace usbdev
