// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/hotplug_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

namespace {

using usbdevctl::HotplugLock;

class TheHotplugLock : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(mkdtemp(folder_), nullptr); }
  void TearDown() override {
    unlink(file().c_str());
    rmdir(folder_);
  }

  std::string file() const { return std::string(folder_) + "/lock"; }

  /// Whether the lock is free.
  bool isFree() const {
    const int other = open(file().c_str(), O_RDWR | O_CLOEXEC);
    const bool free = flock(other, LOCK_EX | LOCK_NB) == 0;
    close(other);
    return free;
  }

 private:
  char folder_[32] = "/tmp/usbdevctl-lock-XXXXXX";
};

TEST_F(TheHotplugLock, IsHeldUntilItsEnd) {
  auto lock = std::make_unique<HotplugLock>(file());
  EXPECT_EQ(lock->error(), "");
  EXPECT_FALSE(isFree());
  lock.reset();
  EXPECT_TRUE(isFree());
}

TEST_F(TheHotplugLock, CanBeOpenedOnlyByItsOwner) {
  const HotplugLock lock(file());
  struct stat found = {};
  ASSERT_EQ(stat(file().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777U, 0600U);
}

TEST_F(TheHotplugLock, IsNotInheritedByCommands) {
  const HotplugLock lock(file());
  const std::string held = "for f in /proc/self/fd/*; do [ \"$f\" -ef " + file() + " ] && exit 1; done; exit 0";
  EXPECT_EQ(std::system(held.c_str()), 0);
}

TEST_F(TheHotplugLock, DoesNotFollowALink) {
  ASSERT_EQ(symlink("/dev/null", file().c_str()), 0);
  EXPECT_EQ(HotplugLock(file()).error(), "cannot lock " + file() + ": Too many levels of symbolic links");
}

TEST_F(TheHotplugLock, IsNotAFolderThatSomebodyPutIntoItsPlace) {
  ASSERT_EQ(mkdir(file().c_str(), 0700), 0);
  EXPECT_EQ(HotplugLock(file()).error(), "cannot lock " + file() + ": Is a directory");
  EXPECT_EQ(rmdir(file().c_str()), 0);
}

TEST_F(TheHotplugLock, ReportsWhatFailed) {
  EXPECT_EQ(HotplugLock("/nowhere/lock").error(), "cannot lock /nowhere/lock: No such file or directory");
}

}  // namespace
