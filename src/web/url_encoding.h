// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The query of a URL, escaped.
#pragma once

#include <cstddef>

namespace usbdev {

/// Escapes "/", "~" and blanks after the first "?" of a URL. out: up to 3 characters per byte, not terminated. Returns
/// the characters written.
std::size_t encodeUrl(const char *in, int length, char *out);

}  // namespace usbdev
