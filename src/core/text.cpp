#include "core/text.h"

#include <usbdev/core.h>

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace usbdev {

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
  return length >= 0 && static_cast<std::size_t>(length) < out.size;
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

/// Trims a text whose end is known.
static char *trimUpTo(char *start, char *end) {
  while (*start == ' ' || *start == '\t' || *start == '"') ++start;
  // A trailing tab stays: only a leading one is cut.
  while (end > start && (end[-1] == ' ' || end[-1] == '\n' || end[-1] == '\r' || end[-1] == '"')) *--end = '\0';
  return start;
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

namespace {

constexpr int kEscapeCapacity = 1024;

/// Puts a backslash before every `escaped` and drops line ends; 0 when the text does not fit its capacity.
int escapeInPlace(char *text, int capacity, char escaped) {
  char original[kEscapeCapacity];
  const std::size_t limit = static_cast<std::size_t>(capacity);
  std::memcpy(original, text, strnlen(text, limit - 1) + 1);
  std::size_t written = 0;
  for (std::size_t read = 0; read < limit && written < limit; ++read) {
    const char c = original[read];
    if (c == '\r' || c == '\n') continue;
    if (c == escaped) {
      text[written++] = '\\';
      if (written == limit) return 0;
    }
    text[written++] = c;
    if (c == '\0') return 1;
  }
  return 0;
}

}  // namespace
}  // namespace usbdev

char *trim(char *text) { return text == nullptr ? nullptr : usbdev::trimUpTo(text, text + std::strlen(text)); }

char *trimdatetime(char *text, const char *remove) {
  if (text == nullptr || remove == nullptr) return text;
  char kept[64];
  std::size_t count = 0;
  for (const char *c = text; *c != '\0' && count < sizeof kept - 1; ++c) {
    if (*c != *remove) kept[count++] = *c;
  }
  kept[count] = '\0';
  std::memcpy(text, kept, count + 1);
  return text;
}

int get_two_params(char *line, const char *separator, char *left, char *right) {
  if (line == nullptr || separator == nullptr || left == nullptr || right == nullptr) return -1;
  const usbdev::Pair sides = usbdev::splitPair(line, separator);
  if (!sides) return -1;
  std::memmove(left, sides.left, std::strlen(sides.left) + 1);
  std::memmove(right, sides.right, std::strlen(sides.right) + 1);
  return 1;
}

int process_json_string(char *text, int capacity) {
  if (text == nullptr || capacity < 1 || capacity > usbdev::kEscapeCapacity) return 0;
  trim(text);  // meant for its effect on the end alone: leading blanks stay
  if (usbdev::escapeInPlace(text, capacity, '\\') != 1) return 0;
  return usbdev::escapeInPlace(text, capacity, '"');
}
