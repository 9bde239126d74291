// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Base64 text.
#pragma once

#include <cstddef>

namespace usbdev {

/// What the encoding of so many bytes takes: 4 characters per started group of 3 bytes, and a zero.
constexpr std::size_t base64Size(std::size_t bytes) { return (bytes + 2) / 3 * 4 + 1; }

/// Encodes bytes. out: base64Size(length) bytes. Returns the characters written.
int encodeBase64(const unsigned char *in, int length, char *out);

/// Encodes a text.
void encodeBase64(const char *text, char *out);

/// Decodes a text. out: 3 bytes per 4 characters, and one more. Returns the bytes written.
int decodeBase64(const char *in, unsigned char *out);

}  // namespace usbdev
