// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>

#include "configuration.h"
#include "private_host.h"
#include "processes.h"

namespace {

class AFileWithTokens : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder(kConfigFolder); }
};

void store(const std::string &path) {
  Configuration writer(kWrite, path);
  ASSERT_EQ(writer.openResult(), xmlcfg::kOpened);
  writer.setNumber("ch0", "exists", 1);
  ASSERT_EQ(writer.close(), xmlcfg::kDone);
}

struct stat statusOf(const std::string &path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status;
}

unsigned permissionsOf(const std::string &path) { return statusOf(path).st_mode & 07777; }

class AnyMask : public AFileWithTokens, public testing::WithParamInterface<mode_t> {
 protected:
  void SetUp() override {
    AFileWithTokens::SetUp();
    previous_ = umask(GetParam());
  }
  void TearDown() override { umask(previous_); }

 private:
  mode_t previous_ = 0;
};

TEST_P(AnyMask, LetsOnlyTheOwnerReadANewFile) {
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), xmlcfg::kOpened);
  EXPECT_EQ(permissionsOf(kConfigFile), 0600U);
  store(kConfigFile);
  EXPECT_EQ(permissionsOf(kConfigFile), 0600U);
}

TEST_P(AnyMask, LeavesAReplacedFileItsPermissions) {
  writeFile(kConfigFile, "<velmora/>");
  ASSERT_EQ(chmod(kConfigFile.c_str(), 0660), 0);
  store(kConfigFile);
  EXPECT_EQ(permissionsOf(kConfigFile), 0660U);
}

INSTANTIATE_TEST_SUITE_P(OfTheWriter, AnyMask, testing::Values(0, 022, 077));

class Permissions : public AFileWithTokens, public testing::WithParamInterface<std::pair<mode_t, mode_t>> {};

TEST_P(Permissions, AreKeptForOwnerAndGroupAndTakenFromOthers) {
  writeFile(kConfigFile, "<velmora/>");
  ASSERT_EQ(chmod(kConfigFile.c_str(), GetParam().first), 0);
  store(kConfigFile);
  EXPECT_EQ(permissionsOf(kConfigFile), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(OfAReplacedFile, Permissions,
                         testing::Values(std::pair(0600, 0600), std::pair(0640, 0640), std::pair(0660, 0660),
                                         std::pair(0644, 0640), std::pair(0604, 0600), std::pair(0666, 0660),
                                         std::pair(0777, 0770), std::pair(06640, 0640)));

// Only root can give a file away; where it cannot be, it stays with the owner it has.
TEST_F(AFileWithTokens, KeepsItsOwnerAndItsGroup) {
  writeFile(kConfigFile, "<velmora/>");
  [[maybe_unused]] const int given = chown(kConfigFile.c_str(), 1234, 5678);
  const struct stat before = statusOf(kConfigFile);
  store(kConfigFile);
  EXPECT_EQ(statusOf(kConfigFile).st_uid, before.st_uid);
  EXPECT_EQ(statusOf(kConfigFile).st_gid, before.st_gid);
}

// A sandbox for a user without rights is such a namespace. Only root can give the file a group that is not its own.
TEST_F(AFileWithTokens, StaysReadableForTheGroupOfItsFolderInANamespaceWithoutThatGroup) {
  [[maybe_unused]] const int folder_given = chown(kConfigFolder.c_str(), geteuid(), 5678);
  ASSERT_EQ(chmod(kConfigFolder.c_str(), 02770), 0);
  writeFile(kConfigFile, "<velmora/>");
  ASSERT_EQ(chmod(kConfigFile.c_str(), 0660), 0);
  const struct stat before = statusOf(kConfigFile);
  EXPECT_EQ(waitForChild(startChild([] {
              if (unshare(CLONE_NEWUSER) != 0) return 1;
              store(kConfigFile);
              return testing::Test::HasFailure() ? 1 : 0;
            })),
            0);
  EXPECT_EQ(permissionsOf(kConfigFile), 0660U);
  EXPECT_EQ(statusOf(kConfigFile).st_gid, before.st_gid);
}

// A group that the file did not have must not get what is in it.
TEST_F(AFileWithTokens, IsTheOwnersAloneInANamespaceWithoutItsGroupIfTheFolderGivesAnother) {
  writeFile(kConfigFile, "<velmora/>");
  ASSERT_EQ(chmod(kConfigFile.c_str(), 0660), 0);
  [[maybe_unused]] const int given = chown(kConfigFile.c_str(), geteuid(), 5678);
  const bool has_other_group = statusOf(kConfigFile).st_gid != getegid();
  EXPECT_EQ(waitForChild(startChild([] {
              const std::string group = std::to_string(getegid());
              if (unshare(CLONE_NEWUSER) != 0) return 1;
              writeFile("/proc/self/setgroups", "deny");
              writeFile("/proc/self/gid_map", group + " " + group + " 1");
              store(kConfigFile);
              return testing::Test::HasFailure() ? 1 : 0;
            })),
            0);
  EXPECT_EQ(permissionsOf(kConfigFile), has_other_group ? 0600U : 0660U);
}

class ALink : public AFileWithTokens {
 protected:
  void SetUp() override {
    AFileWithTokens::SetUp();
    makeFolder(kConfigFolder + "/real");
  }
  static void link(const std::string &target) { std::filesystem::create_symlink(target, kConfigFile); }

  static void expectFollowed(const std::string &target) {
    EXPECT_TRUE(std::filesystem::is_symlink(kConfigFile));
    EXPECT_EQ(Configuration(kRead, target).number("ch0", "exists"), 1);
  }
};

TEST_F(ALink, StaysAndItsFileIsReplaced) {
  writeFile(kConfigFolder + "/real/target.conf", "<velmora/>");
  link("real/target.conf");
  store(kConfigFile);
  expectFollowed(kConfigFolder + "/real/target.conf");
}

TEST_F(ALink, StaysAndItsMissingFileIsMade) {
  link("real/target.conf");
  store(kConfigFile);
  expectFollowed(kConfigFolder + "/real/target.conf");
}

TEST_F(ALink, ToALinkToAMissingFileStaysToo) {
  std::filesystem::create_symlink(kConfigFolder + "/real/target.conf", kConfigFolder + "/real/link");
  link("real/link");
  store(kConfigFile);
  expectFollowed(kConfigFolder + "/real/target.conf");
}

class AChainOfLinks : public ALink, public testing::WithParamInterface<std::pair<int, int>> {};

TEST_P(AChainOfLinks, IsFollowedUpToItsLimit) {
  writeFile(kConfigFolder + "/real/0", "<velmora/>");
  const auto [links, result] = GetParam();
  for (int number = 1; number < links; ++number)
    std::filesystem::create_symlink(std::to_string(number - 1), kConfigFolder + "/real/" + std::to_string(number));
  link("real/" + std::to_string(links - 1));
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), result);
}

INSTANTIATE_TEST_SUITE_P(OfSomeLength, AChainOfLinks,
                         testing::Values(std::pair(1, xmlcfg::kOpened), std::pair(39, xmlcfg::kOpened),
                                         std::pair(40, xmlcfg::kUnreadable)));

TEST_F(ALink, IntoAMissingFolderIsAMissingFile) {
  link("none/target.conf");
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), xmlcfg::kMissing);
  EXPECT_TRUE(std::filesystem::is_symlink(kConfigFile));
}

TEST_F(ALink, ToItselfCannotBeOpened) {
  link("usbdev.conf");
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kUnreadable);
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), xmlcfg::kUnreadable);
  EXPECT_TRUE(std::filesystem::is_symlink(kConfigFile));
}

}  // namespace
