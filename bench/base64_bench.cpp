// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Base64 of one kilobyte, by the library and by OpenSSL: base64_bench encode|decode BOUND.
#include <openssl/evp.h>
#include <usbdev/web.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "pairs.h"

namespace {

constexpr int kBytes = 1024;
constexpr int kCharacters = 1368;
constexpr int kTimesAtOnce = 5000;

unsigned char bytes[kBytes];
unsigned char characters[kCharacters + 1];
unsigned char out[kCharacters + 1];

void encode() { Base64enc(bytes, kBytes, reinterpret_cast<char *>(out)); }
void encodeByOpenssl() { EVP_EncodeBlock(out, bytes, kBytes); }
void decode() { Base64dec(reinterpret_cast<const char *>(characters), out); }
void decodeByOpenssl() { EVP_DecodeBlock(out, characters, kCharacters); }

bench::Step often(void (*run)()) {
  return [run] {
    for (int i = 0; i < kTimesAtOnce; ++i) run();
  };
}

}  // namespace

int main(int, char **argv) {
  for (int i = 0; i < kBytes; ++i) bytes[i] = static_cast<unsigned char>(i * 167 + i / 256);
  EVP_EncodeBlock(characters, bytes, kBytes);
  encode();
  if (std::memcmp(out, characters, sizeof out) != 0) std::abort();
  decode();
  if (std::memcmp(out, bytes, kBytes) != 0) std::abort();
  const double bound = std::atof(argv[2]);
  if (std::strcmp(argv[1], "encode") == 0) return bench::compare(bound, {often(encode), often(encodeByOpenssl)});
  return bench::compare(bound, {often(decode), often(decodeByOpenssl)});
}
