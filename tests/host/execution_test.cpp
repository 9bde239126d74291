// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "platform/orda_exec.h"
#include "private_host.h"

namespace {

class AProgram : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder("/mnt/run"); }
};

TEST_F(AProgram, IsRunWithItsArgumentsAsTheyAre) {
  const std::string target = "/mnt/run/a b;$(touch /mnt/run/shell) '\"*\\|&<>`";
  const std::string link = "/mnt/run/link $HOME";
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/ln", "-sf", target.c_str(), link.c_str(), nullptr), 0);
  EXPECT_EQ(std::filesystem::read_symlink(link), target);
  EXPECT_EQ(namesIn("/mnt/run"), std::vector<std::string>{"link $HOME"});
}

TEST_F(AProgram, GivesItsExitStatus) {
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/true", nullptr), 0);
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/sh", "-c", "exit 42", nullptr), 42);
}

TEST_F(AProgram, KilledByASignalGives128AndItsNumber) {
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/sh", "-c", "kill -9 $$", nullptr), 137);
}

TEST_F(AProgram, ThatIsMissingOrNotAProgramGivesAFailure) {
  writeFile("/mnt/run/text", "no program");
  EXPECT_EQ(orda_exec(0, 0, 0, "/mnt/run/none", nullptr), -1);
  EXPECT_EQ(orda_exec(0, 0, 0, "/mnt/run/text", nullptr), -1);
  EXPECT_EQ(orda_exec(0, 0, 0, nullptr), -1);
}

TEST_F(AProgram, IsNotSearchedInThePath) { EXPECT_EQ(orda_exec(0, 0, 0, "true", nullptr), -1); }

TEST_F(AProgram, SeesNoDescriptorOfItsCaller) {
  const int descriptor = open("/dev/null", O_RDONLY);
  const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
  EXPECT_EQ(orda_exec(0, 0, 0, "/usr/bin/test", "-e", path.c_str(), nullptr), 1);
  EXPECT_EQ(orda_exec(0, 0, 0, "/usr/bin/test", "-e", "/proc/self/fd/2", nullptr), 0);
  close(descriptor);
}

TEST_F(AProgram, ThatNobodyCanWaitForGivesAFailure) {
  signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/true", nullptr), -1);
  signal(SIGCHLD, SIG_DFL);
}

TEST_F(AProgram, IsWaitedForAlthoughASignalInterrupts) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGUSR1, &action, nullptr);
  const std::string interrupt = "kill -USR1 " + std::to_string(getpid()) + "; sleep 0.1; exit 7";
  EXPECT_EQ(orda_exec(0, 0, 0, "/bin/sh", "-c", interrupt.c_str(), nullptr), 7);
  signal(SIGUSR1, SIG_DFL);
}

}  // namespace
