// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "configuration.h"
#include "private_host.h"

namespace {

std::vector<std::string> calls;
std::size_t largest_piece = SIZE_MAX;  // of what is read or written at once

std::string pathOf(int descriptor) {
  return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor));
}

}  // namespace

// These stand in for the C library's, also where the configuration library calls them.

int fsync(int descriptor) {
  calls.push_back("flush " + pathOf(descriptor));
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

int renameat(int from_folder, const char *from, int to_folder, const char *to) noexcept {
  calls.push_back("rename " + pathOf(from_folder) + "/" + from + " to " + pathOf(to_folder) + "/" + to);
  return static_cast<int>(syscall(SYS_renameat2, from_folder, from, to_folder, to, 0));
}

ssize_t read(int descriptor, void *bytes, size_t size) {
  return syscall(SYS_read, descriptor, bytes, std::min(size, largest_piece));
}

ssize_t write(int descriptor, const void *bytes, size_t size) {
  return syscall(SYS_write, descriptor, bytes, std::min(size, largest_piece));
}

namespace {

TEST(AStoredConfiguration, MayBeReadAndWrittenInSmallPieces) {
  makeEmptyFolder(kConfigFolder);
  largest_piece = 7;
  Configuration writer(kWrite, kConfigFile);
  writer.setText("ch0", "devname", "HD Webcam");
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_EQ(Configuration(kRead, kConfigFile).text("ch0", "devname"), "HD Webcam");
  largest_piece = SIZE_MAX;
  EXPECT_EQ(Configuration(kRead, kConfigFile).text("ch0", "devname"), "HD Webcam");
  calls.clear();
}

TEST(AStoredConfiguration, IsOnTheDiskBeforeItReplacesTheOldOneAndSoIsTheReplacement) {
  makeEmptyFolder(kConfigFolder);
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
