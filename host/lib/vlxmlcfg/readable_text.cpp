// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "readable_text.h"

namespace xmlcfg {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::size_t kEscapeLength = 4;  // \xHH

unsigned char byteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

bool continues(std::string_view text, std::size_t at, unsigned char low = 0x80, unsigned char high = 0xBF) {
  unsigned char byte = byteAt(text, at);
  return byte >= low && byte <= high;
}

/// The number of bytes of the valid UTF-8 character beyond ASCII that begins here, 0 if there is none.
std::size_t multibyteLength(std::string_view text, std::size_t at) {
  unsigned char lead = byteAt(text, at);
  if (lead >= 0xC2 && lead <= 0xDF) return continues(text, at + 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    auto low = static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80);   // below: longer than need be
    auto high = static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF);  // above: halves of UTF-16 pairs
    bool noncharacter = lead == 0xEF && byteAt(text, at + 1) == 0xBF && byteAt(text, at + 2) >= 0xBE;
    return continues(text, at + 1, low, high) && continues(text, at + 2) && !noncharacter ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    auto low = static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80);
    auto high = static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF);
    return continues(text, at + 1, low, high) && continues(text, at + 2) && continues(text, at + 3) ? 4 : 0;
  }
  return 0;
}

/// How many bytes from here on are stored unchanged, 0 when the byte here has to be escaped.
std::size_t readableLength(std::string_view value, std::size_t at) {
  unsigned char byte = byteAt(value, at);
  if (byte >= 0x80) return multibyteLength(value, at);
  bool at_an_end = at == 0 || at + 1 == value.size();
  bool escaped = byte < 0x20 || byte == 0x7F || byte == '\\' || (byte == ' ' && at_an_end);
  return escaped ? 0 : 1;
}

int hexValue(char digit) {
  std::size_t value = std::string_view(kHexDigits).find(digit);
  return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

/// The byte of the escape that begins here, 0 if there is none: no value contains a zero byte.
char escapedByte(std::string_view text, std::size_t at) {
  if (at + kEscapeLength > text.size() || text[at] != '\\' || text[at + 1] != 'x') return 0;
  int high = hexValue(text[at + 2]);
  int low = hexValue(text[at + 3]);
  return high < 0 || low < 0 ? '\0' : static_cast<char>(high * 16 + low);
}

}  // namespace

std::string toReadable(std::string_view value) {
  std::string text;
  for (std::size_t at = 0; at < value.size();) {
    if (std::size_t length = readableLength(value, at)) {
      text.append(value, at, length);
      at += length;
      continue;
    }
    unsigned char byte = byteAt(value, at++);
    text.append({'\\', 'x', kHexDigits[byte >> 4], kHexDigits[byte & 15]});
  }
  return text;
}

void appendFromReadable(std::string_view text, BoundedText &value) {
  for (std::size_t at = 0; at < text.size();) {
    char byte = escapedByte(text, at);
    value.append(byte ? byte : text[at]);
    at += byte ? kEscapeLength : 1;
  }
}

}  // namespace xmlcfg
