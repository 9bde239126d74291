// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/unknown_command.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::Command;
using usbdevctl::unknownCommandText;

class ACommandLine : public testing::Test {
 protected:
  ACommandLine() {
    program_.addCommand("channels", "");
    program_.addCommand("check", "");
    Command &stream = program_.addCommand("stream", "");
    stream.addCommand("show", "");
    stream.addCommand("set", "");
  }

  std::string read(const std::vector<std::string> &words) const { return unknownCommandText(program_, words); }

  Command program_{"usbdevctl", ""};
};

TEST_F(ACommandLine, WithKnownCommandsIsGood) {
  EXPECT_EQ(read({}), "");
  EXPECT_EQ(read({"channels", "--json"}), "");
  EXPECT_EQ(read({"stream", "set", "0"}), "");
  EXPECT_EQ(read({"--help"}), "");
  EXPECT_EQ(read({"stream"}), "");
}

TEST_F(ACommandLine, WithAMistypedCommandNamesTheNearestOne) {
  EXPECT_EQ(read({"chanels"}), "no command 'chanels'; did you mean 'channels'?");
  EXPECT_EQ(read({"sream", "show"}), "no command 'sream'; did you mean 'stream'?");
  EXPECT_EQ(read({"stream", "shwo"}), "no command 'stream shwo'; did you mean 'stream show'?");
}

TEST_F(ACommandLine, WithAnotherWordSuggestsNoCommand) {
  EXPECT_EQ(read({"frobnicate"}), "no command 'frobnicate'");
  EXPECT_EQ(read({"s"}), "no command 's'");
  EXPECT_EQ(read({std::string(100000, 'c')}), "no command '" + std::string(100000, 'c') + "'");
}

TEST_F(ACommandLine, IsCorrectedUpToTwoWrongLetters) {
  EXPECT_EQ(read({"chaels"}), "no command 'chaels'; did you mean 'channels'?");
  EXPECT_EQ(read({"chaes"}), "no command 'chaes'");
}

TEST_F(ACommandLine, CannotSendItselfToTheTerminal) { EXPECT_EQ(read({"\x1b[2J"}), "no command '\\x1b[2J'"); }

}  // namespace
