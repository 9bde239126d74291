// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/printable.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::displayWidth;
using usbdevctl::fieldText;
using usbdevctl::printable;

TEST(AnOrdinaryText, IsShownAsItIs) {
  EXPECT_EQ(printable("HD Webcam \"C525\": 046d:0826"), "HD Webcam \"C525\": 046d:0826");
  EXPECT_EQ(printable("Caméra 摄像头 📷"), "Caméra 摄像头 📷");
}

TEST(AControlCharacter, IsShownAsItsNumber) {
  EXPECT_EQ(printable("a\033[31mb"), "a\\x1b[31mb");
  EXPECT_EQ(printable("line\nbreak\t\x7f"), "line\\x0abreak\\x09\\x7f");
}

TEST(AControlCharacter, IsFoundInItsTwoByteFormToo) {
  EXPECT_EQ(printable("\xc2\x9b"
                      "31m"),
            "\\u009b31m");
}

TEST(ABackslash, IsDoubledSoThatNoTextLooksLikeAnEscapedOne) { EXPECT_EQ(printable("\\x1b"), "\\\\x1b"); }

TEST(ACharacterThatTurnsTheLineAround, IsShownAsItsNumber) {
  EXPECT_EQ(printable("\xe2\x80\xae"
                      "x"),
            "\\u202ex");
}

TEST(AnInvisibleCharacter, IsShownAsItsNumber) {
  EXPECT_EQ(printable("a\xe2\x80\x8b"
                      "b"),
            "a\\u200bb");
  EXPECT_EQ(printable("a\xf3\xa0\x80\x81"
                      "b"),
            "a\\U000e0001b");
}

TEST(BytesThatAreNotUtf8, AreShownOneByOne) {
  EXPECT_EQ(printable("\xff"), "\\xff");
  EXPECT_EQ(printable("caf\xe9 x"), "caf\\xe9 x");
  EXPECT_EQ(printable("cut \xe6\x91"), "cut \\xe6\\x91");
}

TEST(BytesThatAreNotUtf8, IncludeOverlongFormsSurrogatesAndCodesBeyondTheLast) {
  EXPECT_EQ(printable("\xc0\xaf"), "\\xc0\\xaf");
  EXPECT_EQ(printable("\xe0\x80\xaf"), "\\xe0\\x80\\xaf");
  EXPECT_EQ(printable("\xed\xa0\x80"), "\\xed\\xa0\\x80");
  EXPECT_EQ(printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");
}

TEST(TheDisplayWidth, CountsTerminalColumnsAndNotBytes) {
  EXPECT_EQ(displayWidth("Caméra"), 6U);
  EXPECT_EQ(displayWidth("摄像头"), 6U);
  EXPECT_EQ(displayWidth("e\xcc\x81"), 1U);
}

TEST(AField, EndsAtItsZeroByte) {
  const char field[8] = {'3', '-', '1', '\0', 'x'};
  EXPECT_EQ(fieldText(field), "3-1");
}

TEST(AField, WithoutAZeroByteEndsWithTheField) {
  const char field[3] = {'a', 'b', 'c'};
  EXPECT_EQ(fieldText(field), "abc");
}

}  // namespace
