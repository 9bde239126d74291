// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Texts of the model: made as printf makes them, and copied into the fixed fields of the callers' records.
#pragma once

#include <cstdio>
#include <cstring>
#include <string>

namespace model {

template <typename... Values>
std::string format(const char *pattern, Values... values) {
  char text[1024];
  snprintf(text, sizeof text, pattern, values...);
  return text;
}

// Cuts what does not fit, and leaves nothing of what was there.
template <size_t Room>
void copy(char (&field)[Room], const std::string &text) {
  memset(field, 0, Room);
  text.copy(field, Room - 1);
}

inline bool contains(const std::string &text, const std::string &part) { return text.find(part) != std::string::npos; }
inline bool beginsWith(const std::string &text, const std::string &part) { return text.rfind(part, 0) == 0; }

}  // namespace model
