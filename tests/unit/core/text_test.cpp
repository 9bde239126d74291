// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Bounded text. What the exported functions show of it, the contract tests judge.
#include "core/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace usbdev {
namespace {

TEST(ACopy, IsWholeWhenTheTextAndItsEndFillTheArray) {
  char out[8];
  copyText(out, "123456");
  EXPECT_STREQ(out, "123456");
  copyText(out, "1234567");
  EXPECT_STREQ(out, "1234567");
}

TEST(ACopy, OfALongerTextIsCutToTheArray) {
  char out[8];
  copyText(out, "12345678");
  EXPECT_STREQ(out, "1234567");
}

TEST(ACopy, IntoACallersBufferIsCutToItsSize) {
  char out[] = "untouched";
  copyText({out, 3}, "abc");
  EXPECT_EQ(std::string(out, sizeof out), std::string("ab\0ouched\0", sizeof out));
}

TEST(ACutCopy, TakesAsManyBytesAsAreAskedFor) {
  char out[8];
  copyCut(out, "abcd", 3);
  EXPECT_STREQ(out, "abc");
  copyCut(out, "abcd", 4);
  EXPECT_STREQ(out, "abcd");
}

TEST(ACutCopy, EndsWithItsText) {
  char out[8];
  copyCut(out, "abcd", 5);
  EXPECT_STREQ(out, "abcd");
}

TEST(ACutCopy, MovesTheEndOfATextToItsStart) {
  char text[] = "12345";
  copyCut(text, text + 1, 4);
  EXPECT_STREQ(text, "2345");
}

TEST(AFormattedText, MayFillItsArray) {
  char out[8];
  EXPECT_TRUE(formatText(out, "%s%d", "12345", 6));
  EXPECT_STREQ(out, "123456");
  EXPECT_TRUE(formatText(out, "%s%d", "12345", 67));
  EXPECT_STREQ(out, "1234567");
}

TEST(AFormattedText, ThatIsLongerIsCutAndReportsIt) {
  char out[8];
  EXPECT_FALSE(formatText(out, "%s%d", "12345", 678));
  EXPECT_STREQ(out, "1234567");
}

TEST(AnAppendedNumber, MayFillTheArray) {
  char out[8] = "1234";
  appendNumber(out, " %d", 56);
  EXPECT_STREQ(out, "1234 56");
}

TEST(AnAppendedNumber, IsCutToTheArray) {
  char out[8] = "1234";
  appendNumber(out, " %d", 567);
  EXPECT_STREQ(out, "1234 56");
}

TEST(AnAppendedNumber, LeavesAFullArrayAsItIs) {
  char out[8] = "1234567";
  appendNumber(out, "%d", 8);
  EXPECT_STREQ(out, "1234567");
}

TEST(AField, IsTerminatedWhenAnEndIsWithinItsArray) {
  const char empty[4] = "";
  const char full[4] = {'a', 'b', 'c', '\0'};
  EXPECT_TRUE(isTerminated(empty));
  EXPECT_TRUE(isTerminated(full));
}

TEST(AField, IsUnterminatedWhenItsTextFillsTheArray) {
  const char field[4] = {'a', 'b', 'c', 'd'};
  EXPECT_FALSE(isTerminated(field));
}

TEST(ANumber, IsReadUpToTheFirstCharacterThatIsNotADigit) {
  EXPECT_EQ(toInt(" -12.5"), -12);
  EXPECT_EQ(toInt("7 cameras"), 7);
}

TEST(ANumber, OfATextWithoutDigitsIs0) {
  EXPECT_EQ(toInt(""), 0);
  EXPECT_EQ(toInt("video0"), 0);
}

TEST(ANumber, IsKeptWithinItsRange) {
  EXPECT_EQ(toInt("2147483647"), INT_MAX);
  EXPECT_EQ(toInt("2147483648"), INT_MAX);
  EXPECT_EQ(toInt("99999999999999999999"), INT_MAX);
  EXPECT_EQ(toInt("-2147483648"), INT_MIN);
  EXPECT_EQ(toInt("-2147483649"), INT_MIN);
  EXPECT_EQ(toInt("-99999999999999999999"), INT_MIN);
}

TEST(ALine, IsCutAtItsFirstLineFeed) {
  char two[] = "one\ntwo\n";
  cutAtLineFeed(two);
  EXPECT_STREQ(two, "one");
  char none[] = "one";
  cutAtLineFeed(none);
  EXPECT_STREQ(none, "one");
}

TEST(AStart, IsTheWholeOfAnotherTextAtMost) {
  EXPECT_TRUE(startsWith("KAB", "KAB"));
  EXPECT_TRUE(startsWith("KAB radio", "KAB"));
  EXPECT_FALSE(startsWith("KA", "KAB"));
}

}  // namespace
}  // namespace usbdev
