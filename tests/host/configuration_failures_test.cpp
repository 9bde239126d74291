// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "configuration_change.h"
#include "failing.h"
#include "private_host.h"

namespace {

constexpr char kBefore[] = "<velmora><ch0><exists>0</exists></ch0></velmora>";
constexpr int kFewestCalls = 10;

class AConfigurationChange : public testing::TestWithParam<const char *> {};

TEST_P(AConfigurationChange, IsMadeOrReportedWhicheverCallFails) {
  for (int number = 1;; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    ConfigurationChange change(GetParam());
    failing::fail(failing::kAny, number, EIO);
    change.run();
    const bool failed = failing::stop();
    change.expectRules();
    if (failed) continue;
    EXPECT_TRUE(change.stored());
    EXPECT_GT(number, kFewestCalls);
    break;
  }
}

TEST_P(AConfigurationChange, IsMadeWhicheverCallASignalInterrupts) {
  bool interrupted = true;
  for (int number = 1; interrupted; ++number) {
    SCOPED_TRACE("call " + std::to_string(number));
    ConfigurationChange change(GetParam());
    failing::fail(failing::kAny, number, EINTR);
    change.run();
    interrupted = failing::stop();
    change.expectRules();
    EXPECT_EQ(change.closeResult(), xmlcfg::kDone);
    EXPECT_TRUE(change.stored());
  }
}

INSTANTIATE_TEST_SUITE_P(OfAFileThatIsThereOrMissing, AConfigurationChange, testing::Values(kBefore, ""));

class ACallThatAlwaysFails : public testing::TestWithParam<const char *> {};

TEST_P(ACallThatAlwaysFails, EndsTheChangeAndLeavesTheFileFree) {
  for (const char *before : {kBefore, ""}) {
    ConfigurationChange change(before);
    failing::fail(GetParam(), failing::kEvery, EIO);
    change.run();
    EXPECT_TRUE(failing::stop());
    change.expectRules();
  }
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, ACallThatAlwaysFails,
                         testing::Values("openat", "read", "write", "flock", "fsync", "close", "fstat", "fstatat",
                                         "faccessat", "fchown", "fchmod", "readlink", "renameat", "unlinkat"),
                         [](const auto &name) { return std::string(name.param); });

struct Failure {
  const char *call;
  int number;
  const char *before;
  int result;
};

class ACallThatFails : public testing::TestWithParam<Failure> {};

TEST_P(ACallThatFails, HasItsOwnResult) {
  ConfigurationChange change(GetParam().before);
  failing::fail(GetParam().call, GetParam().number, EIO);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(change.openResult(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    OfOpening, ACallThatFails,
    testing::Values(Failure{"readlink", 1, kBefore, xmlcfg::kUnreadable},    // a link in the file's place
                    Failure{"openat", 1, kBefore, xmlcfg::kNotWritable},     // its folder
                    Failure{"openat", 2, kBefore, xmlcfg::kUnreadable},      // the file
                    Failure{"faccessat", 1, kBefore, xmlcfg::kNotWritable},  // whether it may be written
                    Failure{"flock", 1, kBefore, xmlcfg::kNotWritable},      // of the file
                    Failure{"fstat", 1, kBefore, xmlcfg::kUnreadable},       // of the locked file
                    Failure{"fstatat", 1, kBefore, xmlcfg::kUnreadable},     // of its name
                    Failure{"fstat", 2, kBefore, xmlcfg::kUnreadable},       // before it is read
                    Failure{"read", 1, kBefore, xmlcfg::kUnreadable},        //
                    Failure{"openat", 3, "", xmlcfg::kNotWritable},          // its folder, to lock it
                    Failure{"flock", 1, "", xmlcfg::kNotWritable},           // of the folder
                    Failure{"faccessat", 1, "", xmlcfg::kNotWritable},       // whether it is there by now
                    Failure{"openat", 4, "", xmlcfg::kNotWritable}),         // the new file
    [](const auto &failure) {
      return std::string(failure.param.call) + std::to_string(failure.param.number) +
             (*failure.param.before ? "" : "OfAMissingFile");
    });

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

// The first flush is that of the new file.
TEST(AFolderThatCannotBeFlushed, IsReportedWithTheChangeStored) {
  ConfigurationChange change(kBefore);
  failing::fail("fsync", 2, EIO);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(change.closeResult(), xmlcfg::kNotFlushed);
  change.expectRules();
}

TEST(AMissingFile, IsNotMadeWhereOneMayBe) {
  ConfigurationChange change("");
  failing::fail("faccessat", failing::kEvery, EIO);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_FALSE(std::filesystem::exists(ConfigurationChange::kFile));
}

TEST(ALink, IsNotReplacedWhenItCannotBeRead) {
  ConfigurationChange change(kBefore);
  const std::string target = ConfigurationChange::kFile + ".real";
  std::filesystem::rename(ConfigurationChange::kFile, target);
  std::filesystem::create_symlink(target, ConfigurationChange::kFile);
  failing::fail("readlink", failing::kEvery, EIO);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(std::filesystem::is_symlink(ConfigurationChange::kFile));
}

TEST(AGroupThatCannotBeKept, LosesItsPermissions) {
  ConfigurationChange change(kBefore);
  failing::fail("fchown", failing::kEvery, EPERM);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  EXPECT_EQ(change.permissions(), 0600U);
}

TEST(AnOwnerThatCannotBeKept, LeavesTheGroupItsPermissions) {
  ConfigurationChange change(kBefore);
  failing::fail("fchown", 1, EPERM);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  EXPECT_EQ(change.permissions(), 0640U);
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

TEST(AnotherFileUnderTheNameOfTheNewOne, DoesNotReplaceTheOldOne) {
  ConfigurationChange change(kBefore);
  const std::string name = std::filesystem::path(ConfigurationChange::kFile).replace_filename(".usbdev.conf.new");
  bool replaced = false;
  failing::doBefore(failing::kEvery, [&] {
    if (replaced || !std::filesystem::exists(name)) return;
    std::filesystem::remove(name);
    writeFile(name, "of others");
    replaced = true;
  });
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(change.closeResult(), xmlcfg::kNotStored);
  change.expectRules();
}

}  // namespace
