// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "configuration_change.h"
#include "failing.h"
#include "private_host.h"

namespace {

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

class ACallOfAClose : public testing::TestWithParam<std::pair<const char *, int>> {};

TEST_P(ACallOfAClose, ThatFailsLeavesTheOldFileAndIsReported) {
  const auto [call, number] = GetParam();
  ConfigurationChange change(kBefore);
  failing::fail(call, number, EIO);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(change.closeResult(), xmlcfg::kNotStored);
  change.expectRules();
}

INSTANTIATE_TEST_SUITE_P(OfAChange, ACallOfAClose,
                         testing::Values(std::pair("fstat", 3),    // of the old file
                                         std::pair("openat", 3),   // the new file
                                         std::pair("fchmod", 1),   //
                                         std::pair("write", 1),    //
                                         std::pair("fsync", 1),    //
                                         std::pair("fstat", 4),    // of the new file
                                         std::pair("fstatat", 2),  // of its name
                                         std::pair("renameat", 1)),
                         [](const auto &call) { return call.param.first + std::to_string(call.param.second); });

class ANewFile : public testing::TestWithParam<const char *> {};

TEST_P(ANewFile, IsNeverOpenToOthers) {
  const std::filesystem::path folder = std::filesystem::path(ConfigurationChange::kFile).parent_path();
  const mode_t mask = umask(0);
  ConfigurationChange change(GetParam());
  failing::doBefore(failing::kEvery, [&] {
    for (const auto &file : std::filesystem::directory_iterator(folder))
      EXPECT_EQ(file.status().permissions() & std::filesystem::perms::others_all, std::filesystem::perms::none);
  });
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  umask(mask);
}

INSTANTIATE_TEST_SUITE_P(InTheFolder, ANewFile, testing::Values(kBefore, ""));

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

// Only root can give the file a group that its folder does not give to new files.
TEST(AGroupThatCannotBeKept, LosesItsPermissions) {
  ConfigurationChange change(kBefore);
  const bool has_other_group = chown(ConfigurationChange::kFile.c_str(), geteuid(), 5678) == 0;
  std::filesystem::permissions(ConfigurationChange::kFile, std::filesystem::perms(0777));
  failing::fail("fchown", failing::kEvery, EPERM);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  EXPECT_EQ(change.permissions(), has_other_group ? 0700U : 0770U);
}

// A service may have lost the right to change owners.
TEST(AGroupThatTheFolderGives, KeepsItsPermissions) {
  ConfigurationChange change(kBefore);
  std::filesystem::permissions(ConfigurationChange::kFile, std::filesystem::perms(0660));
  failing::fail("fchown", failing::kEvery, EPERM);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  EXPECT_EQ(change.permissions(), 0660U);
}

TEST(AnOwnerThatCannotBeKept, LeavesTheGroupItsPermissions) {
  ConfigurationChange change(kBefore);
  failing::fail("fchown", 1, EPERM);
  change.run();
  EXPECT_TRUE(failing::stop());
  EXPECT_TRUE(change.stored());
  EXPECT_EQ(change.permissions(), 0640U);
}

}  // namespace
