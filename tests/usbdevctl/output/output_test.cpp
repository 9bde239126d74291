// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/output.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

namespace {

using usbdevctl::complain;
using usbdevctl::kEndless;
using usbdevctl::outputTakesColour;
using usbdevctl::outputWidth;
using usbdevctl::print;
using usbdevctl::Style;
using usbdevctl::styled;

TEST(AComplaint, IsOneLineOnStandardErrorUnderTheProgramsName) {
  testing::internal::CaptureStderr();
  complain("no");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "usbdevctl: no\n");
}

TEST(AComplaint, CannotReachTheTerminalAsAControlCharacter) {
  testing::internal::CaptureStderr();
  complain("\x1b[2J \\x1b \n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "usbdevctl: \\x1b[2J \\x1b \\x0a\n");
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

// Standard output on a terminal or in a file, in an environment that would take colour.
class StandardOutput : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TERM", "xterm", 1);
    unsetenv("NO_COLOR");
    before_ = dup(STDOUT_FILENO);
    ASSERT_EQ(openpty(&manager_, &terminal_, nullptr, nullptr, nullptr), 0);
    dup2(terminal_, STDOUT_FILENO);
  }

  void TearDown() override {
    dup2(before_, STDOUT_FILENO);
    for (const int descriptor : {before_, manager_, terminal_}) close(descriptor);
    unsetenv("NO_COLOR");
    unsetenv("COLUMNS");
  }

  int before_ = -1;
  int manager_ = -1;
  int terminal_ = -1;
};

TEST_F(StandardOutput, TakesColourOnATerminal) { EXPECT_TRUE(outputTakesColour()); }

TEST_F(StandardOutput, TakesNoColourInAFile) {
  const int file = memfd_create("output", MFD_CLOEXEC);
  dup2(file, STDOUT_FILENO);
  close(file);
  EXPECT_FALSE(outputTakesColour());
}

TEST_F(StandardOutput, TakesNoColourWhereNoneIsAskedFor) {
  setenv("NO_COLOR", "1", 1);
  EXPECT_FALSE(outputTakesColour());
}

TEST_F(StandardOutput, TakesNoColourOnATerminalOfNoKind) {
  unsetenv("TERM");
  EXPECT_FALSE(outputTakesColour());
}

TEST_F(StandardOutput, IsAsWideAsItsTerminal) {
  unsetenv("COLUMNS");
  winsize size = {};
  size.ws_col = 70;
  ASSERT_EQ(ioctl(terminal_, TIOCSWINSZ, &size), 0);
  EXPECT_EQ(outputWidth(), 70U);
}

TEST_F(StandardOutput, IsAsWideAsTheUserSets) {
  setenv("COLUMNS", "60", 1);
  EXPECT_EQ(outputWidth(), 60U);
  for (const char *wrong : {"0", "-1", "x", ""}) {
    setenv("COLUMNS", wrong, 1);
    EXPECT_EQ(outputWidth(), kEndless) << wrong;
  }
}

TEST_F(StandardOutput, IsEndlessInAFile) {
  setenv("COLUMNS", "60", 1);
  const int file = memfd_create("output", MFD_CLOEXEC);
  dup2(file, STDOUT_FILENO);
  close(file);
  EXPECT_EQ(outputWidth(), kEndless);
}

}  // namespace
