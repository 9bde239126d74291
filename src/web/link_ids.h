// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Identifiers for links and tokens.
#pragma once

#include <cstddef>

#include "core/text.h"

namespace usbdev {

constexpr std::size_t kShareIdSize = 9;
constexpr std::size_t kHashSize = 33;

/// Makes a share link's short identifier: eight decimal digits.
void makeShareId(TextBuffer out);

/// Makes a random identifier of 32 lower-case hexadecimal characters; `out` stays as it is when the host gives no
/// random text.
void makeHash(TextBuffer out);

/// Cuts blanks, line ends and double quotes from the end of `text`, then copies it without its hyphens to `out`, which
/// is as large. Returns the length of `text`, its hyphens counted.
std::size_t strip(char *text, char *out);

}  // namespace usbdev
