// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Fills the fixed text fields of the library's records.
#pragma once

#include <cstddef>
#include <string_view>

template <std::size_t Size>
void setField(char (&field)[Size], std::string_view text) {
  field[text.copy(field, Size - 1)] = '\0';
}
