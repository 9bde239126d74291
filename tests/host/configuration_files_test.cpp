// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AConfigurationFile : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder(kConfigFolder); }
};

void store(const std::string &path, int value) {
  Configuration writer(kWrite, path);
  ASSERT_EQ(writer.openResult(), xmlcfg::kOpened);
  writer.setNumber("ch0", "exists", value);
  ASSERT_EQ(writer.close(), xmlcfg::kDone);
}

TEST_F(AConfigurationFile, ThatIsMissingCannotBeRead) {
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kMissing);
  EXPECT_THAT(namesIn(kConfigFolder), IsEmpty());
}

TEST_F(AConfigurationFile, ThatIsMissingIsCreatedByWriting) {
  store(kConfigFile, 1);
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, IsNotCreatedWithoutItsFolder) {
  EXPECT_EQ(Configuration(kWrite, kConfigFolder + "/none/usbdev.conf").openResult(), xmlcfg::kMissing);
  EXPECT_THAT(namesIn(kConfigFolder), IsEmpty());
}

TEST_F(AConfigurationFile, InAFileInsteadOfAFolderIsMissing) {
  writeFile(kConfigFile, "<velmora/>");
  EXPECT_EQ(Configuration(kRead, kConfigFile + "/inner.conf").openResult(), xmlcfg::kMissing);
  EXPECT_EQ(Configuration(kWrite, kConfigFile + "/inner.conf").openResult(), xmlcfg::kMissing);
}

TEST_F(AConfigurationFile, IsStoredByAProcessWithoutStandardInput) {
  const int standard_input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  store(kConfigFile, 1);
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "a descriptor is left open";
  dup2(standard_input, STDIN_FILENO);
  close(standard_input);
}

TEST_F(AConfigurationFile, InTheCurrentFolderNeedsNoPath) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(kConfigFolder);
  store("usbdev.conf", 1);
  std::filesystem::current_path(before);
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, MayBeInTheOutermostFolder) {
  // A folder in the place of the file is found there, and is not a file.
  EXPECT_EQ(Configuration(kWrite, "/etc").openResult(), xmlcfg::kUnreadable);
}

TEST_F(AConfigurationFile, IsOpenOnlyWhileItIsReadByAReader) {
  writeFile(kConfigFile, "<velmora/>");
  const std::size_t before = namesIn("/proc/self/fd").size();
  const Configuration reader(kRead, kConfigFile);
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

class ADamagedFile : public AConfigurationFile, public testing::WithParamInterface<const char *> {};

TEST_P(ADamagedFile, FailsToOpenAndStaysAsItIs) {
  writeFile(kConfigFile, GetParam());
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(readFile(kConfigFile), GetParam());
  EXPECT_THAT(namesIn(kConfigFolder), ElementsAre("usbdev.conf"));
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, ADamagedFile,
                         testing::Values("", "\n", "text", "<velmora>", "<velmora><ch0></velmora>",
                                         "<velmora><ch0><exists>1</exi", "<velmora/>rest", "<velmora/><velmora/>",
                                         "<?xml version=\"1.0\"?>\n", "\x7F\x45LF\x02\x01"));

TEST_F(AConfigurationFile, WithAZeroByteIsDamaged) {
  writeFile(kConfigFile, std::string("<velmora/>\0", 11));
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kDamaged);
}

TEST_F(AConfigurationFile, MayHoldADeclarationAndComments) {
  writeFile(kConfigFile,
            "<?xml version=\"1.0\"?><!-- a --><velmora><!-- b --><ch0><exists>1<!-- c --></exists></ch0></velmora>");
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
  store(kConfigFile, 2);
  EXPECT_NE(readFile(kConfigFile).find("<!-- b -->"), std::string::npos);
}

TEST_F(AConfigurationFile, MayHoldInstructionsForOtherPrograms) {
  writeFile(kConfigFile, "<?editor indent?><velmora><ch0><exists>1</exists></ch0></velmora>");
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, MustBeAPlainFile) {
  makeFolder(kConfigFile);
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kUnreadable);
  ASSERT_EQ(mkfifo((kConfigFolder + "/pipe").c_str(), 0600), 0);
  EXPECT_EQ(Configuration(kRead, kConfigFolder + "/pipe").openResult(), xmlcfg::kUnreadable);
}

TEST_F(AConfigurationFile, IsTheOnlyOneLeftAfterAChange) {
  store(kConfigFile, 1);
  store(kConfigFile, 2);
  EXPECT_THAT(namesIn(kConfigFolder), ElementsAre("usbdev.conf"));
}

TEST_F(AConfigurationFile, IsNotWrittenByACloseWithoutAChange) {
  const std::string content = "<velmora><ch0><exists>1</exists></ch0></velmora>";
  writeFile(kConfigFile, content);
  Configuration writer(kWrite, kConfigFile);
  EXPECT_EQ(writer.setNumber("ch0", "exists", 1), xmlcfg::kDone);
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_EQ(readFile(kConfigFile), content);
}

TEST_F(AConfigurationFile, ShowsAReaderTheStateOfItsOpening) {
  store(kConfigFile, 1);
  Configuration reader(kRead, kConfigFile);
  store(kConfigFile, 2);
  EXPECT_EQ(reader.number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, RefusesUnknownModesAndNullPointers) {
  store(kConfigFile, 1);
  void *handle = nullptr;
  EXPECT_EQ(xmlcfg_open(2, kConfigFile.c_str(), &handle), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_open(0, nullptr, &handle), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_open(0, kConfigFile.c_str(), nullptr), xmlcfg::kBadArgument);
}

TEST_F(AConfigurationFile, IsNotOpenInAProgramThatItsWriterStarts) {
  store(kConfigFile, 1);
  const auto before = namesIn("/proc/self/fd");
  Configuration writer(kWrite, kConfigFile);
  for (const std::string &name : namesIn("/proc/self/fd")) {
    if (std::find(before.begin(), before.end(), name) != before.end()) continue;
    const int flags = fcntl(std::stoi(name), F_GETFD);
    EXPECT_TRUE(flags == -1 || (flags & FD_CLOEXEC) != 0) << name;
  }
}

TEST_F(AConfigurationFile, WhoseFolderIsMissingIsNotStored) {
  store(kConfigFile, 1);
  Configuration writer(kWrite, kConfigFile);
  writer.setNumber("ch0", "exists", 2);
  std::filesystem::remove_all(kConfigFolder);
  EXPECT_EQ(writer.close(), xmlcfg::kNotStored);
}

TEST_F(AConfigurationFile, LeavesNoDescriptorOpen) {
  store(kConfigFile, 1);
  const auto before = namesIn("/proc/self/fd").size();
  store(kConfigFile, 2);
  Configuration(kRead, kConfigFile).close();
  writeFile(kConfigFile, "<damaged");
  Configuration(kWrite, kConfigFile).close();
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

}  // namespace
