// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/text.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace usbdev {
namespace {

constexpr std::size_t kEscapeCapacity = 1024;

/// Trims a text whose end is known.
char *trimUpTo(char *start, char *end) {
  while (*start == ' ' || *start == '\t' || *start == '"') ++start;
  // Intended: A trailing tab stays.
  while (end > start && (end[-1] == ' ' || end[-1] == '\n' || end[-1] == '\r' || end[-1] == '"')) *--end = '\0';
  return start;
}

/// Puts a backslash before every `escaped` and drops line ends; false when the text does not fit its buffer.
bool escapeInPlace(TextBuffer text, char escaped) {
  char original[kEscapeCapacity];
  std::memcpy(original, text.start, strnlen(text.start, text.size - 1) + 1);
  std::size_t written = 0;
  for (std::size_t read = 0; read < text.size && written < text.size; ++read) {
    const char c = original[read];
    if (c == '\r' || c == '\n') continue;
    if (c == escaped) {
      text.start[written++] = '\\';
      if (written == text.size) return false;
    }
    text.start[written++] = c;
    if (c == '\0') return true;
  }
  return false;
}

}  // namespace

void copyText(TextBuffer out, const char *text) { copyCut(out.start, text, out.size - 1); }

void copyCut(char *out, const char *text, std::size_t length) {
  const std::size_t kept = strnlen(text, length);
  std::memmove(out, text, kept);
  out[kept] = '\0';
}

bool formatText(TextBuffer out, const char *pattern, ...) {
  va_list arguments;
  va_start(arguments, pattern);
  const int length = std::vsnprintf(out.start, out.size, pattern, arguments);
  va_end(arguments);
  return static_cast<std::size_t>(length) < out.size;  // a failure, -1, is longer than any array
}

void appendNumber(TextBuffer out, const char *pattern, int number) {
  const std::size_t length = std::strlen(out.start);
  std::snprintf(out.start + length, out.size - length, pattern, number);
}

int toInt(const char *text) {
  const long value = std::strtol(text, nullptr, 10);
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

void cutAtLineFeed(char *text) { text[std::strcspn(text, "\n")] = '\0'; }

char *trim(char *text) { return trimUpTo(text, text + std::strlen(text)); }

void removeAll(char *text, char removed) {
  char kept[64];
  std::size_t count = 0;
  for (const char *c = text; *c != '\0' && count < sizeof kept - 1; ++c) {
    if (*c != removed) kept[count++] = *c;
  }
  kept[count] = '\0';
  std::memcpy(text, kept, count + 1);
}

Pair splitPair(char *line, const char *separator) {
  // Nearly every separator is one character, which strchr finds several times as fast.
  const bool single = separator[0] != '\0' && separator[1] == '\0';
  char *const cut = single ? std::strchr(line, separator[0]) : std::strstr(line, separator);
  if (cut == nullptr) return {};
  char *const right = cut + std::strlen(separator);
  *cut = '\0';
  return {trimUpTo(line, cut), trimUpTo(right, right + std::strlen(right))};
}

bool escapeJson(TextBuffer text) {
  if (text.size < 1 || text.size > kEscapeCapacity) return false;
  // Intended: Leading blanks stay in a JSON text.
  trim(text.start);
  return escapeInPlace(text, '\\') && escapeInPlace(text, '"');
}

}  // namespace usbdev
