#include "output/output.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::complain;
using usbdevctl::outputTakesColour;
using usbdevctl::print;
using usbdevctl::Style;
using usbdevctl::styled;

TEST(AComplaint, IsOneLineOnStandardErrorUnderTheProgramsName) {
  testing::internal::CaptureStderr();
  complain("no");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "usbdevctl: no\n");
}

TEST(WhatIsPrinted, GoesToStandardOutputWithItsZeroBytes) {
  testing::internal::CaptureStdout();
  print(std::string("a\0b", 3));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("a\0b", 3));
}

TEST(Colour, IsPutAroundAStyledText) { EXPECT_EQ(styled("bad", Style::bad, true), "\033[31mbad\033[0m"); }

TEST(Colour, IsLeftOutWhereItIsOff) {
  EXPECT_EQ(styled("bad", Style::bad, false), "bad");
  EXPECT_EQ(styled("plain", Style::plain, true), "plain");
}

TEST(Colour, IsNotForAFile) {
  testing::internal::CaptureStdout();
  const bool colour = outputTakesColour();
  testing::internal::GetCapturedStdout();
  EXPECT_FALSE(colour);
}

}  // namespace
