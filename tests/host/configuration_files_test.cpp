// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string kFolder = std::string(kWorkFolder) + "/config";
const std::string kFile = kFolder + "/usbdev.conf";

class AConfigurationFile : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder(kFolder); }
};

void store(const std::string &path, int value) {
  Configuration writer(kWrite, path);
  ASSERT_EQ(writer.openResult(), xmlcfg::kOpened);
  writer.setNumber("ch0", "exists", value);
  ASSERT_EQ(writer.close(), xmlcfg::kDone);
}

TEST_F(AConfigurationFile, ThatIsMissingCannotBeRead) {
  EXPECT_EQ(Configuration(kRead, kFile).openResult(), xmlcfg::kMissing);
  EXPECT_THAT(namesIn(kFolder), IsEmpty());
}

TEST_F(AConfigurationFile, ThatIsMissingIsCreatedByWriting) {
  store(kFile, 1);
  EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, IsNotCreatedWithoutItsFolder) {
  EXPECT_EQ(Configuration(kWrite, kFolder + "/none/usbdev.conf").openResult(), xmlcfg::kMissing);
  EXPECT_THAT(namesIn(kFolder), IsEmpty());
}

TEST_F(AConfigurationFile, InAFileInsteadOfAFolderIsMissing) {
  writeFile(kFile, "<velmora/>");
  EXPECT_EQ(Configuration(kRead, kFile + "/inner.conf").openResult(), xmlcfg::kMissing);
  EXPECT_EQ(Configuration(kWrite, kFile + "/inner.conf").openResult(), xmlcfg::kMissing);
}

TEST_F(AConfigurationFile, InTheCurrentFolderNeedsNoPath) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(kFolder);
  store("usbdev.conf", 1);
  std::filesystem::current_path(before);
  EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, MayBeInTheOutermostFolder) {
  // A folder in the place of the file is found there, and is not a file.
  EXPECT_EQ(Configuration(kWrite, "/etc").openResult(), xmlcfg::kUnreadable);
}

TEST_F(AConfigurationFile, IsOpenOnlyWhileItIsReadByAReader) {
  writeFile(kFile, "<velmora/>");
  const std::size_t before = namesIn("/proc/self/fd").size();
  const Configuration reader(kRead, kFile);
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

class ADamagedFile : public AConfigurationFile, public testing::WithParamInterface<const char *> {};

TEST_P(ADamagedFile, FailsToOpenAndStaysAsItIs) {
  writeFile(kFile, GetParam());
  EXPECT_EQ(Configuration(kRead, kFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(Configuration(kWrite, kFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(readFile(kFile), GetParam());
  EXPECT_THAT(namesIn(kFolder), ElementsAre("usbdev.conf"));
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, ADamagedFile,
                         testing::Values("", "\n", "text", "<velmora>", "<velmora><ch0></velmora>",
                                         "<velmora><ch0><exists>1</exi", "<velmora/>rest", "<velmora/><velmora/>",
                                         "<?xml version=\"1.0\"?>\n", "\x7F\x45LF\x02\x01"));

TEST_F(AConfigurationFile, WithAZeroByteIsDamaged) {
  writeFile(kFile, std::string("<velmora/>\0", 11));
  EXPECT_EQ(Configuration(kRead, kFile).openResult(), xmlcfg::kDamaged);
}

TEST_F(AConfigurationFile, MayHoldADeclarationAndComments) {
  writeFile(kFile,
            "<?xml version=\"1.0\"?><!-- a --><velmora><!-- b --><ch0><exists>1<!-- c --></exists></ch0></velmora>");
  EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 1);
  store(kFile, 2);
  EXPECT_NE(readFile(kFile).find("<!-- b -->"), std::string::npos);
}

TEST_F(AConfigurationFile, MustBeAPlainFile) {
  makeFolder(kFile);
  EXPECT_EQ(Configuration(kRead, kFile).openResult(), xmlcfg::kUnreadable);
  ASSERT_EQ(mkfifo((kFolder + "/pipe").c_str(), 0600), 0);
  EXPECT_EQ(Configuration(kRead, kFolder + "/pipe").openResult(), xmlcfg::kUnreadable);
}

TEST_F(AConfigurationFile, IsTheOnlyOneLeftAfterAChange) {
  store(kFile, 1);
  store(kFile, 2);
  EXPECT_THAT(namesIn(kFolder), ElementsAre("usbdev.conf"));
}

TEST_F(AConfigurationFile, IsNotWrittenByACloseWithoutAChange) {
  const std::string content = "<velmora><ch0><exists>1</exists></ch0></velmora>";
  writeFile(kFile, content);
  Configuration writer(kWrite, kFile);
  EXPECT_EQ(writer.setNumber("ch0", "exists", 1), xmlcfg::kDone);
  EXPECT_EQ(writer.close(), xmlcfg::kDone);
  EXPECT_EQ(readFile(kFile), content);
}

TEST_F(AConfigurationFile, ShowsAReaderTheStateOfItsOpening) {
  store(kFile, 1);
  Configuration reader(kRead, kFile);
  store(kFile, 2);
  EXPECT_EQ(reader.number("ch0", "exists"), 1);
}

TEST_F(AConfigurationFile, RefusesUnknownModesAndNullPointers) {
  store(kFile, 1);
  void *handle = nullptr;
  EXPECT_EQ(xmlcfg_open(2, kFile.c_str(), &handle), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_open(0, nullptr, &handle), xmlcfg::kBadArgument);
  EXPECT_EQ(xmlcfg_open(0, kFile.c_str(), nullptr), xmlcfg::kBadArgument);
}

TEST_F(AConfigurationFile, IsNotOpenInAProgramThatItsWriterStarts) {
  store(kFile, 1);
  const auto before = namesIn("/proc/self/fd");
  Configuration writer(kWrite, kFile);
  for (const std::string &name : namesIn("/proc/self/fd")) {
    if (std::find(before.begin(), before.end(), name) != before.end()) continue;
    const int flags = fcntl(std::stoi(name), F_GETFD);
    EXPECT_TRUE(flags == -1 || (flags & FD_CLOEXEC) != 0) << name;
  }
}

TEST_F(AConfigurationFile, WhoseFolderIsMissingIsNotStored) {
  store(kFile, 1);
  Configuration writer(kWrite, kFile);
  writer.setNumber("ch0", "exists", 2);
  std::filesystem::remove_all(kFolder);
  EXPECT_EQ(writer.close(), xmlcfg::kNotStored);
}

TEST_F(AConfigurationFile, LeavesNoDescriptorOpen) {
  store(kFile, 1);
  const auto before = namesIn("/proc/self/fd").size();
  store(kFile, 2);
  Configuration(kRead, kFile).close();
  writeFile(kFile, "<damaged");
  Configuration(kWrite, kFile).close();
  EXPECT_EQ(namesIn("/proc/self/fd").size(), before);
}

}  // namespace
