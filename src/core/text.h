// Bounded text: copying, formatting and reading numbers, always within the destination's own size.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace usbdev {

/// Copies text into an array, cut to what fits.
template <std::size_t N>
void copyText(char (&out)[N], const char *text) {
  memccpy(out, text, '\0', N - 1);
  out[N - 1] = '\0';
}

/// Copies the first `length` bytes of a text into a caller's buffer and terminates it.
inline void copyCut(char *out, const char *text, std::size_t length) {
  const std::size_t kept = strnlen(text, length);
  std::memmove(out, text, kept);
  out[kept] = '\0';
}

/// printf into an array, cut to what fits; false when something was cut.
template <std::size_t N>
__attribute__((format(printf, 2, 3))) bool formatText(char (&out)[N], const char *pattern, ...) {
  va_list arguments;
  va_start(arguments, pattern);
  const int length = std::vsnprintf(out, N, pattern, arguments);
  va_end(arguments);
  return length >= 0 && static_cast<std::size_t>(length) < N;
}

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

/// The two trimmed sides of a line cut at a separator; they point into the line.
struct Pair {
  char *left = nullptr;
  char *right = nullptr;
  explicit operator bool() const { return left != nullptr; }
};

/// Cuts a line in place at the first separator; tests false, the line untouched, where there is none.
Pair splitPair(char *line, const char *separator);

}  // namespace usbdev
