// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What others do to the file and its folder while it is read or changed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "configuration_change.h"
#include "failing.h"
#include "private_host.h"

namespace {

/// Cuts the file before each of the calls in turn.
TEST(AFileThatGetsShorter, IsReadUpToItsEnd) {
  bool cut = true;
  for (int number = 1; cut; ++number) {
    const ConfigurationChange folder(kBefore + std::string(1000, ' '));
    failing::doBefore(number, [] { std::filesystem::resize_file(ConfigurationChange::kFile, sizeof kBefore - 1); });
    Configuration reader(kRead, ConfigurationChange::kFile);
    cut = failing::stop();
    EXPECT_EQ(reader.openResult(), xmlcfg::kOpened);
    EXPECT_EQ(reader.number("ch0", "exists"), 0);
  }
}

/// Renames the folder back and forth, so that the rules can be looked at.
TEST(AFolderThatIsRenamedDuringASave, HasTheOldFileOrTheNewOneAndNothingElse) {
  const std::string folder = std::filesystem::path(ConfigurationChange::kFile).parent_path();
  bool renamed = true;
  for (int number = 1; renamed; ++number) {
    SCOPED_TRACE("before call " + std::to_string(number));
    ConfigurationChange change(kBefore);
    failing::doBefore(number, [&] { std::filesystem::rename(folder, folder + ".moved"); });
    change.run();
    renamed = failing::stop();
    if (renamed) std::filesystem::rename(folder + ".moved", folder);
    change.expectRules();
  }
}

TEST(AFileThatIsRemovedWhileItIsOpened, IsNotUnreadable) {
  bool removed = true;
  for (int number = 1; removed; ++number) {
    SCOPED_TRACE("before call " + std::to_string(number));
    ConfigurationChange change(kBefore);
    failing::doBefore(number, [] { std::filesystem::remove(ConfigurationChange::kFile); });
    change.run();
    removed = failing::stop();
    EXPECT_NE(change.openResult(), xmlcfg::kUnreadable);
  }
}

bool isLocked(const std::string &path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool locked = flock(descriptor, LOCK_EX | LOCK_NB) != 0;
  close(descriptor);
  return locked;
}

ino_t numberOf(const std::string &path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_ino;
}

/// Both files have the same number, on two disks.
TEST(AFileThatIsMountedOverTheLockedOne, IsOpenedInItsPlace) {
  const std::string file = "/mnt/below/usbdev.conf";
  const std::string other = "/mnt/above/usbdev.conf";
  for (const std::string &path : {file, other}) {
    makeFolder(std::filesystem::path(path).parent_path());
    mountMemory(std::filesystem::path(path).parent_path());
  }
  writeFile(file, "<velmora/>");
  writeFile(other, "<velmora><ch0><exists>1</exists></ch0></velmora>");
  ASSERT_EQ(numberOf(file), numberOf(other));
  bool mounted = false;
  failing::doBefore(failing::kEvery, [&] {
    if (mounted || !isLocked(file)) return;
    mounted = mount(other.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) == 0;
  });
  Configuration writer(kWrite, file);
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(mounted);
  EXPECT_EQ(writer.number("ch0", "exists"), 1);
}

std::string newName() { return std::filesystem::path(ConfigurationChange::kFile).replace_filename(".usbdev.conf.new"); }

TEST(AFileOfOthersInThePlaceOfTheNewOne, Stays) {
  bool begun = true;
  int refused = 0;
  for (int number = 1; begun; ++number) {
    SCOPED_TRACE("before call " + std::to_string(number));
    ConfigurationChange change(kBefore);
    failing::doBefore(number, [] {
      if (!std::filesystem::exists(newName())) writeFile(newName(), "of others");
    });
    change.run();
    begun = failing::stop();
    if (change.stored()) continue;
    ++refused;
    EXPECT_EQ(readFile(newName()), "of others");
  }
  EXPECT_EQ(refused, 1);
}

TEST(AnotherFileUnderTheNameOfTheNewOne, DoesNotReplaceTheOldOne) {
  ConfigurationChange change(kBefore);
  bool replaced = false;
  failing::doBefore(failing::kEvery, [&] {
    if (replaced || !std::filesystem::exists(newName())) return;
    std::filesystem::remove(newName());
    writeFile(newName(), "of others");
    replaced = true;
  });
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(change.closeResult(), xmlcfg::kNotStored);
  change.expectRules();
}

}  // namespace
