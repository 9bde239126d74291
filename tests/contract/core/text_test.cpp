// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// trim, trimdatetime, get_two_params and process_json_string.
#include <gtest/gtest.h>
#include <usbdev/usbdev.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

std::string trimmed(const std::string &text) {
  std::vector<char> buffer(text.c_str(), text.c_str() + text.size() + 1);
  return trim(buffer.data());
}

TEST(Trim, CutsBlanksQuotesAndLineEndsAround) { EXPECT_EQ(trimmed("  \"abc\" \r\n"), "abc"); }

TEST(Trim, CutsLeadingTabs) { EXPECT_EQ(trimmed("\t \"\tabc"), "abc"); }

TEST(Trim, KeepsATrailingTab) { EXPECT_EQ(trimmed("abc\t"), "abc\t"); }

TEST(Trim, ATrailingTabProtectsWhatIsBeforeIt) { EXPECT_EQ(trimmed("abc \t\n"), "abc \t"); }

TEST(Trim, KeepsLeadingLineEnds) { EXPECT_EQ(trimmed("\r\nabc"), "\r\nabc"); }

TEST(Trim, KeepsWhatIsInside) { EXPECT_EQ(trimmed(" a \"b\"\tc "), "a \"b\"\tc"); }

TEST(Trim, TurnsNothingButLineEndsIntoNothing) { EXPECT_EQ(trimmed("\r\n\r\n"), ""); }

TEST(Trim, TurnsNothingButBlanksIntoNothing) { EXPECT_EQ(trimmed("  \"\t "), ""); }

TEST(Trim, LeavesAnEmptyTextEmpty) { EXPECT_EQ(trimmed(""), ""); }

TEST(Trim, KeepsBytesAbove127) { EXPECT_EQ(trimmed(" \xc3\xa9\xff "), "\xc3\xa9\xff"); }

TEST(Trim, PointsIntoTheSameBufferAndLeavesTheStartThere) {
  char text[] = "  abc ";
  EXPECT_EQ(trim(text), text + 2);
  EXPECT_STREQ(text, "  abc");
}

TEST(Trim, CutsTheEndDownToTheKeptStartOnly) {
  char text[] = " \t \r\n";
  EXPECT_STREQ(trim(text), "");
  EXPECT_STREQ(text, " \t ");
}

TEST(Trim, OfNothingIsNothing) { EXPECT_EQ(trim(nullptr), nullptr); }

TEST(TrimDateTime, OfNothingDoesNothing) {
  char text[] = "2024-03-05";
  EXPECT_EQ(trimdatetime(nullptr, "-"), nullptr);
  EXPECT_EQ(trimdatetime(text, nullptr), text);
  EXPECT_STREQ(text, "2024-03-05");
}

TEST(TrimDateTime, RemovesEveryOccurrence) {
  char date[] = "2024-03-05";
  EXPECT_EQ(trimdatetime(date, "-"), date);
  EXPECT_STREQ(date, "20240305");
}

TEST(TrimDateTime, RemovesOnlyTheFirstCharacterOfTheGivenText) {
  char time[] = "08:15-00";
  trimdatetime(time, ":-");
  EXPECT_STREQ(time, "0815-00");
}

TEST(TrimDateTime, LeavesATextWithoutTheCharacter) {
  char text[] = "20240305";
  trimdatetime(text, "-");
  EXPECT_STREQ(text, "20240305");
}

TEST(TrimDateTime, TurnsNothingElseIntoNothing) {
  char text[] = "---";
  trimdatetime(text, "-");
  EXPECT_STREQ(text, "");
}

TEST(TrimDateTime, TakesSixtyThreeCharacters) {
  for (const std::string &kept : {std::string(62, '7'), std::string(63, '7')}) {
    std::string text = kept + std::string(63 - kept.size(), '-');
    trimdatetime(text.data(), "-");
    EXPECT_STREQ(text.c_str(), kept.c_str());
  }
}

TEST(TrimDateTime, CutsAfterSixtyThreeCharacters) {
  for (const int length : {64, 65, 200}) {
    std::string text(static_cast<size_t>(length), '7');
    trimdatetime(text.data(), "-");
    EXPECT_STREQ(text.c_str(), std::string(63, '7').c_str());
  }
}

class ALineToSplit : public testing::Test {
 protected:
  int split(const std::string &text, const char *separator) {
    line.assign(text.c_str(), text.c_str() + text.size() + 1);
    return get_two_params(line.data(), separator, left, right);
  }

  std::vector<char> line;
  char left[64] = "left";
  char right[64] = "right";
};

TEST_F(ALineToSplit, GivesBothPartsTrimmed) {
  EXPECT_EQ(split("Model = K41\n", "="), 1);
  EXPECT_STREQ(left, "Model");
  EXPECT_STREQ(right, "K41");
}

TEST_F(ALineToSplit, IsCutAtTheFirstSeparator) {
  EXPECT_EQ(split("a=b=c", "="), 1);
  EXPECT_STREQ(left, "a");
  EXPECT_STREQ(right, "b=c");
}

TEST_F(ALineToSplit, IsCutAtTheWholeSeparator) {
  EXPECT_EQ(split("    ATTRS{idVendor}==\"046d\"\n", "=="), 1);
  EXPECT_STREQ(left, "ATTRS{idVendor}");
  EXPECT_STREQ(right, "046d");
}

TEST_F(ALineToSplit, IsChangedAtTheSeparator) {
  split("key=value", "=");
  EXPECT_STREQ(line.data(), "key");
}

TEST_F(ALineToSplit, WithoutTheSeparatorLeavesEverythingAlone) {
  EXPECT_EQ(split(" key = value ", "=="), -1);
  EXPECT_STREQ(left, "left");
  EXPECT_STREQ(right, "right");
  EXPECT_STREQ(line.data(), " key = value ");
}

TEST_F(ALineToSplit, GivesEmptyPartsAroundALoneSeparator) {
  EXPECT_EQ(split(" = \n", "="), 1);
  EXPECT_STREQ(left, "");
  EXPECT_STREQ(right, "");
}

TEST_F(ALineToSplit, AtAnEmptySeparatorGivesTwoEmptyParts) {
  EXPECT_EQ(split("key=value", ""), 1);
  EXPECT_STREQ(left, "");
  EXPECT_STREQ(right, "");
}

TEST_F(ALineToSplit, MayBeSplitIntoItself) {
  char own[] = "  key = value ";
  EXPECT_EQ(get_two_params(own, "=", own, right), 1);
  EXPECT_STREQ(own, "key");
  EXPECT_STREQ(right, "value");
}

TEST_F(ALineToSplit, WritesNothingAfterTheEndsOfItsParts) {
  memset(left, '#', sizeof left);
  memset(right, '#', sizeof right);
  split("key=value", "=");
  EXPECT_EQ(std::string(left, 5), std::string("key\0#", 5));
  EXPECT_EQ(std::string(right, 7), std::string("value\0#", 7));
}

TEST_F(ALineToSplit, WithAnythingMissingIsLeftAlone) {
  char own[] = "key=value";
  EXPECT_EQ(get_two_params(nullptr, "=", left, right), -1);
  EXPECT_EQ(get_two_params(own, nullptr, left, right), -1);
  EXPECT_EQ(get_two_params(own, "=", nullptr, right), -1);
  EXPECT_EQ(get_two_params(own, "=", left, nullptr), -1);
  EXPECT_STREQ(own, "key=value");
  EXPECT_STREQ(left, "left");
  EXPECT_STREQ(right, "right");
}

// A text with room for the terminator and guards after the capacity.
class ATextForJson : public testing::Test {
 protected:
  int escape(const std::string &text, int capacity) {
    buffer.assign(static_cast<size_t>(capacity > 0 ? capacity : 0) + text.size() + 64, '#');
    memcpy(buffer.data(), text.c_str(), text.size() + 1);
    return process_json_string(buffer.data(), capacity);
  }
  std::string result() const { return buffer.data(); }
  std::string bytes(size_t count) const { return std::string(buffer.data(), count); }

  std::vector<char> buffer;
};

TEST_F(ATextForJson, GetsABackslashBeforeQuotesAndBackslashes) {
  EXPECT_EQ(escape("a\"b\\c", 64), 1);
  EXPECT_EQ(result(), "a\\\"b\\\\c");
}

TEST_F(ATextForJson, LosesLineEndsInside) {
  EXPECT_EQ(escape("a\r\nb", 64), 1);
  EXPECT_EQ(result(), "ab");
}

TEST_F(ATextForJson, IsTrimmedAtTheEndOnly) {
  EXPECT_EQ(escape("  abc \"\n", 64), 1);
  EXPECT_EQ(result(), "  abc");
}

TEST_F(ATextForJson, KeepsTabsAndBytesAbove127) {
  EXPECT_EQ(escape("a\tb\xc3\xa9", 64), 1);
  EXPECT_EQ(result(), "a\tb\xc3\xa9");
}

TEST_F(ATextForJson, EmptyStaysEmpty) {
  EXPECT_EQ(escape("", 64), 1);
  EXPECT_EQ(result(), "");
}

TEST_F(ATextForJson, MayFillItsCapacityWithTheTerminator) {
  EXPECT_EQ(escape("a\"b", 5), 1);
  EXPECT_EQ(result(), "a\\\"b");
}

TEST_F(ATextForJson, ThatGrowsPastItsCapacityIsCutThere) {
  EXPECT_EQ(escape("a\"b", 4), 0);
  EXPECT_EQ(bytes(4), "a\\\"b");
}

TEST_F(ATextForJson, IsNeverWrittenBeyondItsCapacity) {
  escape(std::string(10, '\\'), 10);
  EXPECT_EQ(bytes(10), std::string(10, '\\'));
  EXPECT_EQ(bytes(12), std::string(10, '\\') + std::string("\0#", 2));
}

TEST_F(ATextForJson, AnEscapedPairIsCutBetweenItsBytes) {
  EXPECT_EQ(escape("\"\"\"x", 5), 0);
  EXPECT_EQ(bytes(6), "\\\"\\\"\\" + std::string(1, '#'));
}

TEST_F(ATextForJson, IsNotQuotedWhenTheBackslashPassFails) {
  EXPECT_EQ(escape("\"\\\\\\x", 6), 0);
  EXPECT_EQ(bytes(6), "\"\\\\\\\\\\");
}

TEST_F(ATextForJson, WithoutATerminatorWithinTheCapacityFails) {
  EXPECT_EQ(escape("abcdef", 6), 0);
  EXPECT_EQ(bytes(6), "abcdef");
}

TEST_F(ATextForJson, IsReadNoFurtherThanItsCapacityWhenLineEndsMakeRoom) {
  EXPECT_EQ(escape("\n\nab", 4), 0);
  EXPECT_EQ(escape("\n\nab", 5), 1);
  EXPECT_EQ(result(), "ab");
}

TEST_F(ATextForJson, MayHaveACapacityOfOne) {
  EXPECT_EQ(escape("", 1), 1);
  EXPECT_EQ(result(), "");
  EXPECT_EQ(escape("a", 1), 0);
  EXPECT_EQ(bytes(3), std::string("a\0#", 3));
}

TEST_F(ATextForJson, MayHaveACapacityOf1024) {
  EXPECT_EQ(escape(std::string(1023, 'a'), 1024), 1);
  EXPECT_EQ(result(), std::string(1023, 'a'));
}

TEST_F(ATextForJson, Of1024BytesWithoutAnEndFailsAtTheLargestCapacity) {
  for (const char filler : {'a', '\\', '"'}) {
    const std::string text = std::string(1024, filler) + "b";
    EXPECT_EQ(escape(text, 1024), 0);
    EXPECT_EQ(bytes(1024), std::string(1024, filler));
    EXPECT_EQ(buffer[1024], 'b');
  }
  EXPECT_EQ(escape(std::string(1023, '\n') + "ab", 1024), 0);
}

TEST_F(ATextForJson, OfNothingButSpecialCharactersFillsTheLargestCapacity) {
  EXPECT_EQ(escape(std::string(511, '"') + "a", 1024), 1);
  EXPECT_EQ(result().size(), 1023U);
}

TEST(NoTextForJson, Fails) { EXPECT_EQ(process_json_string(nullptr, 64), 0); }

class ARefusedCapacity : public ATextForJson, public testing::WithParamInterface<int> {};

TEST_P(ARefusedCapacity, LeavesTheTextUntouched) {
  EXPECT_EQ(escape(" a\"b \n", GetParam()), 0);
  EXPECT_EQ(result(), " a\"b \n");
}

INSTANTIATE_TEST_SUITE_P(OutOfRange, ARefusedCapacity, testing::Values(1025, 100000, 0, -1));

}  // namespace
