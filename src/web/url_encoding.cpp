// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/url_encoding.h"

#include <cstring>

namespace usbdev {
namespace {

/// What a character of the query part is written as; null when as itself.
const char *escapeOf(char c) {
  // Intended: Only three characters are escaped.
  switch (c) {
    case '/':
      return "%2F";
    case '~':
      return "%7E";
    case ' ':
      return "%20";
    default:
      return nullptr;
  }
}

}  // namespace

std::size_t encodeUrl(const char *in, int length, char *out) {
  char *end = out;
  bool in_query = false;
  for (int i = 0; i < length; ++i) {
    const char *const escape = in_query ? escapeOf(in[i]) : nullptr;
    if (escape != nullptr) {
      std::memcpy(end, escape, 3);
      end += 3;
    } else {
      *end++ = in[i];
    }
    in_query = in_query || in[i] == '?';
  }
  return static_cast<std::size_t>(end - out);
}

}  // namespace usbdev
