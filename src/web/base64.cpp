// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/base64.h"

#include <endian.h>
#include <netinet/in.h>

#include <cstdint>
#include <cstring>

namespace usbdev {
namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
constexpr unsigned kPad = 64;
constexpr unsigned char kOutside = 255;
constexpr std::size_t kGroup = 4;

struct DecodingTable {
  unsigned char values[256];
};

constexpr DecodingTable makeDecodingTable() {
  DecodingTable table{};
  for (unsigned char &value : table.values) value = kOutside;
  for (unsigned char i = 0; i < kPad; ++i) table.values[static_cast<unsigned char>(kAlphabet[i])] = i;
  return table;
}

constexpr DecodingTable kDecoding = makeDecodingTable();

constexpr int kBlock = 6;  // two groups

/// Encodes a block at once, for speed. Reads eight bytes.
char *encodeBlock(const unsigned char *in, char *out) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, in, sizeof bits);
  bits = be64toh(bits);
#pragma GCC unroll 8
  for (int shift = 58; shift >= 16; shift -= 6) *out++ = kAlphabet[bits >> shift & 63U];
  return out;
}

char *encodeGroup(unsigned bits, char *out) {
  out[0] = kAlphabet[bits >> 18];
  out[1] = kAlphabet[bits >> 12 & 63U];
  out[2] = kAlphabet[bits >> 6 & 63U];
  out[3] = kAlphabet[bits & 63U];
  return out + kGroup;
}

char *encodeRest(const unsigned char *in, int length, char *out) {
  if (length < 1) return out;
  char *const end = encodeGroup(static_cast<unsigned>(in[0]) << 16 | (length > 1 ? in[1] * 256U : 0U), out);
  end[-1] = kAlphabet[kPad];
  if (length == 1) end[-2] = kAlphabet[kPad];
  return end;
}

std::uint32_t placed(char c, int position) {
  return static_cast<std::uint32_t>(kDecoding.values[static_cast<unsigned char>(c)]) << (18 - 6 * position);
}

/// Characters outside the alphabet are not detected: each makes its group wrong.
inline unsigned char *decodeGroup(const char *in, unsigned char *out) {
  // Intended: The text is not checked.
  const std::uint32_t bits = placed(in[0], 0) | placed(in[1], 1) | placed(in[2], 2) | placed(in[3], 3);
  const std::uint32_t bytes = htonl(bits << 8);
  std::memcpy(out, &bytes, kGroup);  // the fourth byte is zero and lies where the next one or the terminator goes
  return out + kGroup - 1;
}

/// A last group gives one byte fewer than it has characters.
unsigned char *decodeRest(const char *in, std::size_t held, unsigned char *out) {
  if (held < 2) return out;
  char group[kGroup] = {'A', 'A', 'A', 'A'};  // which mean zero bits
  std::memcpy(group, in, held);
  unsigned char bytes[kGroup];
  decodeGroup(group, bytes);
  std::memcpy(out, bytes, held - 1);
  return out + held - 1;
}

}  // namespace

int encodeBase64(const unsigned char *in, int length, char *out) {
  char *end = out;
  for (; length >= 8; length -= kBlock, in += kBlock) end = encodeBlock(in, end);
  for (; length >= 3; length -= 3, in += 3) {
    end = encodeGroup(static_cast<unsigned>(in[0]) << 16 | static_cast<unsigned>(in[1]) << 8 | in[2], end);
  }
  end = encodeRest(in, length, end);
  *end = '\0';
  return static_cast<int>(end - out);
}

void encodeBase64(const char *text, char *out) {
  encodeBase64(reinterpret_cast<const unsigned char *>(text), static_cast<int>(std::strlen(text)), out);
}

int decodeBase64(const char *in, unsigned char *out) {
  unsigned char *end = out;
  std::size_t left = std::strcspn(in, "=");
  for (; left >= kGroup; left -= kGroup, in += kGroup) end = decodeGroup(in, end);
  end = decodeRest(in, left, end);
  *end = '\0';
  return static_cast<int>(end - out);
}

}  // namespace usbdev
