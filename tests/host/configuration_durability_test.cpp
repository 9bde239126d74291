// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "configuration.h"
#include "private_host.h"

namespace {

constexpr uid_t kForeignOwner = 1234;

std::vector<std::string> calls;
std::vector<uid_t> owners;             // that files were to have
bool of_a_foreign_owner = false;       // whether every file is
std::size_t largest_piece = SIZE_MAX;  // of what is read or written at once
bool locked_at_flush = false;          // whether others had to wait when something was flushed last
std::string appended;                  // to the file after its first piece is read

std::string pathOf(int descriptor) {
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
}

bool isLocked(const std::string &path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool locked = file >= 0 && flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  close(file);
  return locked;
}

}  // namespace

// These stand in for the C library's, also where the configuration library calls them.

int fsync(int descriptor) {
  calls.push_back("flush " + pathOf(descriptor));
  locked_at_flush = isLocked(kConfigFile);
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

int renameat(int from_folder, const char *from, int to_folder, const char *to) noexcept {
  calls.push_back("rename " + pathOf(from_folder) + "/" + from + " to " + pathOf(to_folder) + "/" + to);
  return static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, 0));
}

int fchown(int descriptor, uid_t owner, gid_t group) noexcept {
  owners.push_back(owner);
  if (owner == kForeignOwner) {
    errno = EPERM;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fchown, descriptor, owner, group));
}

int fstat(int descriptor, struct stat *status) noexcept {
  const int result = fstatat(descriptor, "", status, AT_EMPTY_PATH);
  if (of_a_foreign_owner) status->st_uid = kForeignOwner;
  return result;
}

ssize_t read(int descriptor, void *bytes, size_t size) {
  const ssize_t count = syscall(SYS_read, descriptor, bytes, std::min(size, largest_piece));
  if (!appended.empty()) std::ofstream(kConfigFile, std::ios::app) << std::exchange(appended, "");
  return count;
}

ssize_t write(int descriptor, const void *bytes, size_t size) {
  return syscall(SYS_write, descriptor, bytes, std::min(size, largest_piece));
}

namespace {

class AStoredConfiguration : public testing::Test {
 protected:
  void SetUp() override {
    makeEmptyFolder(kConfigFolder);
    calls.clear();
    owners.clear();
    largest_piece = SIZE_MAX;
    of_a_foreign_owner = false;
  }
};

TEST_F(AStoredConfiguration, MayBeReadAndWrittenInSmallPieces) {
  largest_piece = 7;
  Configuration writer(kWrite, kConfigFile);
  writer.setText("ch0", "devname", "HD Webcam");
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_EQ(Configuration(kRead, kConfigFile).text("ch0", "devname"), "HD Webcam");
  largest_piece = SIZE_MAX;
  EXPECT_EQ(Configuration(kRead, kConfigFile).text("ch0", "devname"), "HD Webcam");
}

TEST_F(AStoredConfiguration, IsReadUpToTheEndItHadWhenItWasOpened) {
  writeFile(kConfigFile, "<velmora><ch0><exists>1</exists></ch0></velmora>");
  largest_piece = 20;
  appended = "<rest";
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
  EXPECT_EQ(appended, "");
}

TEST_F(AStoredConfiguration, MayBeWrittenByteByByte) {
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 1);
  largest_piece = 1;
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
}

TEST_F(AStoredConfiguration, IsTheOldOneWhereADiskTakesNothing) {
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 1);
  largest_piece = 0;
  EXPECT_EQ(writer.close(), xmlcfg::kNotStored);
}

TEST_F(AStoredConfiguration, KeepsItsOwner) {
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 1);
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_THAT(owners, testing::ElementsAre(geteuid()));
}

TEST_F(AStoredConfiguration, StaysWithItsNewOwnerWhereItCannotKeepTheOldOne) {
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 1);
  of_a_foreign_owner = true;
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_THAT(owners, testing::ElementsAre(kForeignOwner, static_cast<uid_t>(-1)));
}

TEST_F(AStoredConfiguration, IsOnTheDiskBeforeItHasItsNameAtFirstToo) {
  const Configuration writer(kWrite, kConfigFile);
  const std::string first = kConfigFolder + "/.usbdev.conf.first";
  EXPECT_THAT(calls, testing::ElementsAre("flush " + first, "rename " + first + " to " + kConfigFile,
                                          "flush " + kConfigFolder));
}

TEST_F(AStoredConfiguration, IsWrittenByNobodyElseBeforeItsNameIsOnTheDisk) {
  Configuration writer(kWrite, kConfigFile);
  EXPECT_TRUE(locked_at_flush);  // of the folder, after the file was created
  writer.setNumber("ch0", "exists", 1);
  locked_at_flush = false;
  ASSERT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_TRUE(locked_at_flush);
}

TEST_F(AStoredConfiguration, IsOnTheDiskBeforeItReplacesTheOldOneAndSoIsTheReplacement) {
  writeFile(kConfigFile, "<velmora/>");
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 1);
  EXPECT_THAT(calls, testing::IsEmpty());
  ASSERT_EQ(writer.close(), xmlcfg::kDone);
  const std::string fresh = kConfigFolder + "/.usbdev.conf.new";
  EXPECT_THAT(calls, testing::ElementsAre("flush " + fresh, "rename " + fresh + " to " + kConfigFile,
                                          "flush " + kConfigFolder));
}

}  // namespace
