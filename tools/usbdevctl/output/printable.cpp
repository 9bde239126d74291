// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/printable.h"

#include <clocale>
#include <cstdio>
#include <cwchar>

namespace usbdevctl {

namespace {

struct Character {
  char32_t code;
  std::size_t bytes;  // 0 = not UTF-8
};

unsigned char byteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

bool isContinuation(std::string_view text, std::size_t at) {
  return at < text.size() && (byteAt(text, at) & 0xC0U) == 0x80;
}

// How many bytes a character that begins with this byte has.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

// Overlong forms, surrogates and codes beyond the last one are not UTF-8.
bool isValid(char32_t code, std::size_t bytes) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  return code >= kSmallest[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character decode(std::string_view text, std::size_t at) {
  const unsigned char lead = byteAt(text, at);
  const std::size_t bytes = lengthFrom(lead);
  if (bytes < 2) return {lead, bytes};
  char32_t code = lead & (0x7FU >> bytes);
  for (std::size_t next = 1; next < bytes; ++next) {
    if (!isContinuation(text, at + next)) return {lead, 0};
    code = code << 6U | (byteAt(text, at + next) & 0x3FU);
  }
  return isValid(code, bytes) ? Character{code, bytes} : Character{lead, 0};
}

bool isWithin(char32_t code, char32_t first, char32_t last) { return code >= first && code <= last; }

// Characters that show nothing themselves, move the cursor, or change the direction of what follows.
bool isHidden(char32_t code) {
  return code < 0x20 || isWithin(code, 0x7F, 0x9F) || code == 0xAD || code == 0x61C || isWithin(code, 0x200B, 0x200F) ||
         isWithin(code, 0x2028, 0x202E) || isWithin(code, 0x2060, 0x206F) || code == 0xFEFF ||
         isWithin(code, 0xFFF9, 0xFFFB) || isWithin(code, 0xE0000, 0xE007F);
}

std::string escape(const char *format, unsigned value) {
  char text[16];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string shown(std::string_view bytes, Character character) {
  const auto code = static_cast<unsigned>(character.code);
  if (character.bytes == 0 || code < 0x20 || code == 0x7F) return escape("\\x%02x", code);
  if (isHidden(character.code)) return escape(code > 0xFFFF ? "\\U%08x" : "\\u%04x", code);
  return std::string(bytes);
}

template <typename Show>
std::string eachShown(std::string_view text, Show show) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = decode(text, at);
    const std::size_t bytes = character.bytes ? character.bytes : 1;
    result += show(text.substr(at, bytes), character);
    at += bytes;
  }
  return result;
}

// Widths are the same whatever language the user's environment names.
class Utf8Locale {
 public:
  Utf8Locale() : before_(uselocale(locale())) {}
  ~Utf8Locale() { uselocale(before_); }
  Utf8Locale(const Utf8Locale &) = delete;
  Utf8Locale &operator=(const Utf8Locale &) = delete;

 private:
  static locale_t locale() {
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return utf8;  // null leaves the current one in force
  }

  locale_t before_;
};

std::size_t columnsOf(Character character) {
  const int width = wcwidth(static_cast<wchar_t>(character.code));
  return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

std::string printable(std::string_view text) {
  return eachShown(text, [](std::string_view bytes, Character character) {
    return character.code == '\\' ? "\\\\" : shown(bytes, character);
  });
}

std::string withoutHidden(std::string_view text) { return eachShown(text, shown); }

std::size_t displayWidth(std::string_view text) {
  const Utf8Locale locale;
  std::size_t columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = decode(text, at);
    columns += columnsOf(character);
    at += character.bytes ? character.bytes : 1;
  }
  return columns;
}

std::string cutToWidth(const std::string &text, std::size_t columns) {
  if (displayWidth(text) <= columns) return text;
  const Utf8Locale locale;
  std::size_t at = 0;
  std::size_t taken = 1;  // by the ellipsis
  while (at < text.size()) {
    const Character character = decode(text, at);
    taken += columnsOf(character);
    if (taken > columns) break;
    at += character.bytes ? character.bytes : 1;
  }
  return text.substr(0, at) + "\u2026";
}

}  // namespace usbdevctl
