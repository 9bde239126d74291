// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The encodings beside those of other libraries, on a million random inputs each. Every input ends where its buffer
// ends, and so does every output of its documented size: the sanitizers report what is read or written after them.
#include <curl/curl.h>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <usbdev/web.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kInputs = 1000000;
constexpr size_t kLongest = 56;

// The last bytes of a block, so that their end is its end.
class Buffer {
 public:
  char *last(size_t size) { return block_.data() + block_.size() - size; }

 private:
  std::vector<char> block_ = std::vector<char>(4 * kLongest);
};

class ChanceInputs {
 public:
  // Up to kLongest - 8 random bytes; their end is the end of the buffer.
  const char *next(size_t &length) {
    length = static_cast<size_t>(chance_() % (kLongest - 8));
    char *const bytes = buffer_.last(length);
    for (size_t i = 0; i < length; i += 8) {
      const uint64_t word = chance_();
      memcpy(bytes + i, &word, length - i < 8 ? length - i : 8);
    }
    return bytes;
  }

 private:
  std::mt19937_64 chance_{20240305};
  Buffer buffer_;
};

// Equal, told apart only when it is not: a million assertions take their time.
bool isSame(const char *a, const char *b, size_t length) { return memcmp(a, b, length) == 0; }

TEST(AMillionRandomInputs, AreEncodedToBase64AsByAnotherLibrary) {
  ChanceInputs inputs;
  Buffer output;
  unsigned char theirs[2 * kLongest];
  for (int i = 0; i < kInputs; ++i) {
    size_t length = 0;
    const auto *const bytes = reinterpret_cast<const unsigned char *>(inputs.next(length));
    const int size = EVP_EncodeBlock(theirs, bytes, static_cast<int>(length));
    char *const ours = output.last(static_cast<size_t>(size) + 1);
    const int written = Base64enc(bytes, static_cast<int>(length), ours);
    if (written == size && isSame(ours, reinterpret_cast<char *>(theirs), static_cast<size_t>(size) + 1)) continue;
    FAIL() << "input " << i << " of " << length << " bytes: " << ours << " instead of " << theirs;
  }
}

size_t padsOf(const char *text, size_t length) {
  size_t pads = 0;
  while (pads < length && text[length - 1 - pads] == '=') ++pads;
  return pads;
}

// The other library counts the bytes of the pads too.
TEST(AMillionRandomInputs, AreDecodedFromBase64AsByAnotherLibrary) {
  ChanceInputs inputs;
  Buffer texts;
  Buffer output;
  unsigned char encoded[2 * kLongest];
  unsigned char theirs[2 * kLongest];
  for (int i = 0; i < kInputs; ++i) {
    size_t length = 0;
    const auto *const bytes = reinterpret_cast<const unsigned char *>(inputs.next(length));
    const auto size = static_cast<size_t>(EVP_EncodeBlock(encoded, bytes, static_cast<int>(length)));
    char *const text = texts.last(size + 1);
    memcpy(text, encoded, size + 1);
    const size_t decoded = static_cast<size_t>(EVP_DecodeBlock(theirs, encoded, static_cast<int>(size)));
    const size_t expected = decoded - padsOf(text, size);
    char *const ours = output.last(size / 4 * 3 + 1);
    const int written = Base64dec(text, reinterpret_cast<unsigned char *>(ours));
    if (written == static_cast<int>(expected) && isSame(ours, reinterpret_cast<char *>(theirs), expected) &&
        ours[expected] == '\0') {
      continue;
    }
    FAIL() << "input " << i << ": " << text;
  }
}

using Escapes = std::array<std::string, 256>;

// What the other library makes of each byte. Ours leaves all but three as they are, and one of these three, the tilde,
// is left alone by the other.
Escapes describedEscapes() {
  Escapes escapes;
  for (int c = 0; c < 256; ++c) escapes.at(static_cast<size_t>(c)).assign(1, static_cast<char>(c));
  for (const char c : {'/', ' '}) {
    char *const escape = curl_easy_escape(nullptr, &c, 1);
    escapes.at(static_cast<size_t>(c)) = escape;
    curl_free(escape);
  }
  escapes['~'] = "%7E";
  return escapes;
}

std::string escaped(const Escapes &escapes, const char *bytes, size_t length) {
  std::string text;
  const auto *const end = bytes + length;
  const auto *const query = static_cast<const char *>(memchr(bytes, '?', length));
  for (; bytes != end; ++bytes) {
    const bool inside = query != nullptr && bytes > query;
    if (inside) {
      text += escapes[static_cast<unsigned char>(*bytes)];
    } else {
      text += *bytes;
    }
  }
  return text;
}

bool givesBack(const std::string &text, const char *bytes, size_t length) {
  int size = 0;
  char *const plain = curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &size);
  const bool same = static_cast<size_t>(size) == length && isSame(plain, bytes, length);
  curl_free(plain);
  return same;
}

// A percent sign is left as it is, so that only inputs without one can be given back.
TEST(AMillionRandomInputs, AreEscapedForAnotherLibrary) {
  const Escapes escapes = describedEscapes();
  ChanceInputs inputs;
  Buffer output;
  char bytes[kLongest];
  for (int i = 0; i < kInputs; ++i) {
    size_t length = 0;
    const char *const random = inputs.next(length);
    // One byte of eight is among those that matter.
    for (size_t k = 0; k < length; ++k) bytes[k] = random[k] % 8 == 0 ? "/~ ?"[random[k] / 8 & 3] : random[k];
    for (size_t k = 0; k < length; ++k) bytes[k] = bytes[k] == '%' ? '?' : bytes[k];
    const std::string expected = escaped(escapes, bytes, length);
    char *const ours = output.last(expected.size());
    url_encode(ours, bytes, static_cast<int>(length));
    if (isSame(ours, expected.data(), expected.size()) && (length == 0 || givesBack(expected, bytes, length))) continue;
    FAIL() << "input " << i << ": " << expected;
  }
}

}  // namespace
