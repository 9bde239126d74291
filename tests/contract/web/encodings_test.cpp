// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Base64 and the escaping of request paths.
#include <random>
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

std::string encoded(const std::string &bytes) {
  std::string out((bytes.size() + 2) / 3 * 4 + 4, '#');
  const auto *in = reinterpret_cast<const unsigned char *>(bytes.data());
  const int length = Base64enc(in, static_cast<int>(bytes.size()), out.data());
  EXPECT_EQ(out.substr(static_cast<size_t>(length)), std::string("\0###", 4));
  return out.substr(0, static_cast<size_t>(length));
}

std::string decoded(const std::string &text) {
  std::string out((text.size() + 3) / 4 * 3 + 4, '#');
  const int length = Base64dec(text.c_str(), reinterpret_cast<unsigned char *>(out.data()));
  EXPECT_EQ(out[static_cast<size_t>(length)], '\0');
  EXPECT_EQ(out.back(), '#');
  return out.substr(0, static_cast<size_t>(length));
}

struct Encoding {
  std::string bytes;
  std::string text;
};

class ABase64Text : public testing::TestWithParam<Encoding> {};

TEST_P(ABase64Text, IsTheEncodingOfItsBytes) { EXPECT_EQ(encoded(GetParam().bytes), GetParam().text); }

TEST_P(ABase64Text, GivesItsBytesBack) { EXPECT_EQ(decoded(GetParam().text), GetParam().bytes); }

// The vectors of RFC 4648, the ends of the alphabet, and zeros.
INSTANTIATE_TEST_SUITE_P(OfKnownBytes, ABase64Text,
                         testing::Values(Encoding{"", ""}, Encoding{"f", "Zg=="}, Encoding{"fo", "Zm8="},
                                         Encoding{"foo", "Zm9v"}, Encoding{"foob", "Zm9vYg=="},
                                         Encoding{"fooba", "Zm9vYmE="}, Encoding{"foobar", "Zm9vYmFy"},
                                         Encoding{"a:b", "YTpi"}, Encoding{"ab", "YWI="}, Encoding{"a", "YQ=="},
                                         Encoding{"\xff\xff\xff", "////"}, Encoding{"\xfb\xef\xbe", "++++"},
                                         Encoding{std::string(3, '\0'), "AAAA"},
                                         Encoding{std::string("a\0b", 3), "YQBi"}));

// The encoding of the first bytes alone.
std::string encodedFirst(const std::string &bytes, int count) {
  char out[16] = "";
  Base64enc(reinterpret_cast<const unsigned char *>(bytes.data()), count, out);
  return out;
}

TEST(ABase64Encoding, OfManyBytesHasNoLineBreak) {
  std::string expected;
  for (int i = 0; i < 100; ++i) expected += "Zm9v";
  std::string bytes;
  for (int i = 0; i < 100; ++i) bytes += "foo";
  EXPECT_EQ(encoded(bytes), expected);
}

TEST(ABase64Encoding, OfALengthBelowOneIsEmpty) {
  for (const int length : {0, -1, -2147483647}) {
    char out[] = "before";
    const unsigned char in[] = "abc";
    EXPECT_EQ(Base64enc(in, length, out), 0);
    EXPECT_STREQ(out, "");
  }
}

TEST(ABase64Encoding, OfNoBytesNeedsNone) {
  char out[] = "before";
  EXPECT_EQ(Base64enc(nullptr, 0, out), 0);
  EXPECT_STREQ(out, "");
}

TEST(ABase64Encoding, OfATextStopsAtItsEnd) {
  char out[16] = "";
  EXPECT_EQ(Base64encs("ab\0cd", out), out);
  EXPECT_STREQ(out, "YWI=");
}

TEST(ABase64Encoding, LooksAtNothingAfterItsLength) {
  for (const char following : {'\0', '\x5a', '\xff'}) {
    const std::string bytes = "ab" + std::string(4, following);
    EXPECT_EQ(encodedFirst(bytes, 2), "YWI=");
    EXPECT_EQ(encodedFirst("a" + bytes.substr(2), 1), "YQ==");
  }
}

TEST(ABase64Encoding, ComesBackFromEveryByteAtEveryPosition) {
  std::mt19937 chance(1);
  for (size_t length = 0; length < 300; ++length) {
    std::string bytes(length, '\0');
    for (char &byte : bytes) byte = static_cast<char>(chance());
    EXPECT_EQ(decoded(encoded(bytes)), bytes);
  }
}

TEST(ABase64Decoding, GivesTheOutput) {
  char out[8] = "";
  EXPECT_EQ(Base64decs("YWI=", out), out);
  EXPECT_STREQ(out, "ab");
}

TEST(ABase64Decoding, WritesNothingAfterItsEnd) {
  for (const char *text : {"YWI=", "YW==", "YWJj", "YWJjYW=="}) {
    std::string out(16, '#');
    const auto count = static_cast<size_t>(Base64dec(text, reinterpret_cast<unsigned char *>(out.data())));
    EXPECT_EQ(out.substr(count), std::string(1, '\0') + std::string(15 - count, '#')) << text;
  }
}

TEST(ABase64Decoding, StopsAtTheFirstPad) {
  EXPECT_EQ(decoded("=abc"), "");
  EXPECT_EQ(decoded("YW=I"), "a");
  EXPECT_EQ(decoded("YWJj=YWJj"), "abc");
}

TEST(ABase64Decoding, OfAGroupWithoutPadGivesOneByteFewerThanCharacters) {
  EXPECT_EQ(decoded("YWJ"), "ab");
  EXPECT_EQ(decoded("YW"), "a");
  EXPECT_EQ(decoded("Y"), "");
  EXPECT_EQ(decoded("YWJjY"), "abc");
}

// 255 at the place of the second character sets bits 19 to 12, which the first byte's lowest bits share.
TEST(ABase64Decoding, OfAForeignCharacterSpoilsItsGroupOnly) {
  EXPECT_EQ(decoded("A AAYWJj"), std::string("\x0f\xf0\0", 3) + "abc");
  EXPECT_EQ(decoded("AAA\n"), std::string("\0\0\xff", 3));
  EXPECT_EQ(decoded("-AAA"), std::string("\xfc\0\0", 3));
  EXPECT_EQ(decoded("\xe9"
                    "AAA"),
            std::string("\xfc\0\0", 3));
}

// The last of four characters sets the lowest bits of the last byte: six, or all eight when it is foreign.
TEST(ABase64Decoding, ReadsOnlyTheAlphabet) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  for (int c = 1; c < 256; ++c) {
    if (c == '=') continue;
    const size_t place = alphabet.find(static_cast<char>(c));
    const char last = place == std::string::npos ? '\xff' : static_cast<char>(place);
    EXPECT_EQ(decoded(std::string("AAA") + static_cast<char>(c)), std::string(2, '\0') + last) << c;
  }
}

std::string escaped(const std::string &path) {
  std::string out(3 * path.size() + 4, '#');
  EXPECT_EQ(url_encode(out.data(), path.data(), static_cast<int>(path.size())), 0);
  const size_t end = out.find("####");
  return out.substr(0, end);
}

struct Escaping {
  std::string path;
  std::string escaped;
};

class ARequestPath : public testing::TestWithParam<Escaping> {};

TEST_P(ARequestPath, IsEscapedInItsQueryOnly) { EXPECT_EQ(escaped(GetParam().path), GetParam().escaped); }

INSTANTIATE_TEST_SUITE_P(OfEveryShape, ARequestPath,
                         testing::Values(Escaping{"/cgi-bin/x.cgi?a=b c/d~e", "/cgi-bin/x.cgi?a=b%20c%2Fd%7Ee"},
                                         Escaping{"/a b/~c", "/a b/~c"}, Escaping{"/a?/?/", "/a?%2F?%2F"},
                                         Escaping{"?&=+:%\xc3\xa9", "?&=+:%\xc3\xa9"}, Escaping{"?", "?"},
                                         Escaping{"", ""}, Escaping{std::string("?\0/", 3), std::string("?\0%2F", 5)}));

TEST(ARequestPathEscaping, WritesNothingAfterTheLastByte) {
  char out[] = "before";
  EXPECT_EQ(url_encode(out, "a?/", 2), 0);
  EXPECT_STREQ(out, "a?fore");
}

TEST(ARequestPathEscaping, OfALengthBelowOneWritesNothing) {
  for (const int length : {0, -1}) {
    char out[] = "before";
    EXPECT_EQ(url_encode(out, "?/", length), 0);
    EXPECT_STREQ(out, "before");
  }
}

TEST(AnEncodingOfNothing, ChangesNothing) {
  char out[] = "before";
  EXPECT_EQ(Base64enc(nullptr, 1, out), 0);
  EXPECT_EQ(Base64enc(nullptr, 3, out), 0);
  EXPECT_EQ(Base64enc(reinterpret_cast<const unsigned char *>("abc"), 3, nullptr), 0);
  EXPECT_EQ(Base64dec("YWJj", nullptr), 0);
  EXPECT_EQ(url_encode(nullptr, "/", 1), 0);
  EXPECT_EQ(Base64encs(nullptr, out), out);
  EXPECT_EQ(Base64encs("abc", nullptr), nullptr);
  EXPECT_EQ(Base64dec(nullptr, reinterpret_cast<unsigned char *>(out)), 0);
  EXPECT_EQ(Base64decs(nullptr, out), out);
  EXPECT_EQ(Base64decs("YWJj", nullptr), nullptr);
  EXPECT_EQ(url_encode(out, nullptr, 3), 0);
  EXPECT_STREQ(out, "before");
}

}  // namespace
}  // namespace contract
