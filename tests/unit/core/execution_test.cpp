// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Programs on a host without its own command execution: the library runs them itself. Compiled in, as no exported
// function passes their results on.
#include "core/execution.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

namespace {

const char *script = nullptr;  // what a shell does instead of the program
bool spawn_fails = false;
int interruptions = 0;  // waits that a signal interrupts first
int waits = 0;

template <typename Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int posix_spawn(pid_t *child, const char *path, const posix_spawn_file_actions_t *actions,
                const posix_spawnattr_t *attributes, char *const arguments[], char *const environment[]) {
  static auto *const spawn = real<decltype(posix_spawn)>("posix_spawn");
  if (spawn_fails) return EAGAIN;
  if (script == nullptr) return spawn(child, path, actions, attributes, arguments, environment);
  char *const shell[] = {const_cast<char *>("/bin/sh"), const_cast<char *>("-c"), const_cast<char *>(script), nullptr};
  return spawn(child, "/bin/sh", actions, attributes, shell, environment);
}

pid_t waitpid(pid_t child, int *status, int options) {
  static auto *const wait = real<decltype(waitpid)>("waitpid");
  ++waits;
  if (interruptions == 0) return wait(child, status, options);
  --interruptions;
  errno = EINTR;
  return -1;
}

}  // extern "C"

namespace {

using usbdev::makeLink;
using usbdev::removePath;

class AProgramRunDirectly : public testing::Test {
 protected:
  AProgramRunDirectly() {
    script = nullptr;
    spawn_fails = false;
    interruptions = waits = 0;
    char pattern[] = "/tmp/direct_execution.XXXXXX";
    folder = mkdtemp(pattern);
  }
  ~AProgramRunDirectly() override { std::filesystem::remove_all(folder); }

  // Runs a shell script in the program's place.
  static int run(const char *text) {
    script = text;
    return removePath("/nowhere");
  }

  std::string folder;
};

TEST_F(AProgramRunDirectly, GetsItsArgumentsWithoutAShell) {
  const std::string target = "a b;$(touch shell) '\"*";
  const std::string link = folder + "/link $HOME";
  EXPECT_EQ(makeLink(target.c_str(), link.c_str()), 0);
  EXPECT_EQ(std::filesystem::read_symlink(link), target);
}

TEST_F(AProgramRunDirectly, ReplacesALinkThatIsThere) {
  const std::string link = folder + "/link";
  makeLink("old", link.c_str());
  EXPECT_EQ(makeLink("new", link.c_str()), 0);
  EXPECT_EQ(std::filesystem::read_symlink(link), "new");
}

TEST_F(AProgramRunDirectly, RemovesALinkAndWhatIsNotThere) {
  const std::string link = folder + "/link";
  makeLink("nowhere", link.c_str());
  EXPECT_EQ(removePath(link.c_str()), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_EQ(removePath(link.c_str()), 0);
}

TEST_F(AProgramRunDirectly, GivesItsExitStatus) {
  EXPECT_EQ(run("exit 0"), 0);
  EXPECT_EQ(run("exit 1"), 1);
  EXPECT_EQ(run("exit 255"), 255);
}

TEST_F(AProgramRunDirectly, ThatASignalEndsFails) { EXPECT_EQ(run("kill -KILL $$"), -1); }

TEST_F(AProgramRunDirectly, ThatCannotBeStartedFailsAndNothingIsWaitedFor) {
  spawn_fails = true;
  EXPECT_EQ(removePath("/nowhere"), -1);
  EXPECT_EQ(waits, 0);
}

TEST_F(AProgramRunDirectly, IsWaitedForThroughInterruptions) {
  interruptions = 2;
  EXPECT_EQ(run("exit 7"), 7);
  EXPECT_EQ(waits, 3);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}

TEST_F(AProgramRunDirectly, WhoseStatusTheHostThrowsAwayFails) {
  signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(run("exit 0"), -1);
  signal(SIGCHLD, SIG_DFL);
}

}  // namespace
