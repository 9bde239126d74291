// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

class ALargeConfiguration : public testing::Test {
 protected:
  void SetUp() override { makeEmptyFolder(kConfigFolder); }
};

void expectDamaged(const std::string &content) {
  writeFile(kConfigFile, content);
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(Configuration(kWrite, kConfigFile).openResult(), xmlcfg::kDamaged);
  EXPECT_EQ(readFile(kConfigFile), content);
  EXPECT_THAT(namesIn(kConfigFolder), testing::ElementsAre("usbdev.conf"));
}

std::string nested(std::size_t depth) {
  std::string text = "<velmora>";
  for (std::size_t level = 1; level < depth; ++level) text += "<a>";
  for (std::size_t level = 1; level < depth; ++level) text += "</a>";
  return text + "</velmora>";
}

constexpr std::size_t kDepthOfASubKey = 4;

TEST_F(ALargeConfiguration, MayHaveElementsAsDeepAsSubKeys) {
  writeFile(kConfigFile, nested(kDepthOfASubKey));
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kOpened);
}

TEST_F(ALargeConfiguration, WithElementsDeeperThanSubKeysIsDamaged) {
  expectDamaged(nested(kDepthOfASubKey + 1));
  expectDamaged("<velmora><a/>" + nested(kDepthOfASubKey) + "</velmora>");
}

TEST_F(ALargeConfiguration, OfNestedElementsIsDamaged) { expectDamaged(nested(20000)); }

/// A file of the size, with one value that fills it up.
std::string fileOf(std::size_t size) {
  const std::string before = "<velmora><ch0><exists>1</exists><devname>";
  const std::string after = "</devname></ch0></velmora>";
  return before + std::string(size - before.size() - after.size(), 'x') + after;
}

TEST_F(ALargeConfiguration, MayBeAsLargeAsTheLimit) {
  writeFile(kConfigFile, fileOf(xmlcfg::kLargestFile));
  EXPECT_EQ(Configuration(kRead, kConfigFile).number("ch0", "exists"), 1);
}

TEST_F(ALargeConfiguration, AboveTheLimitIsDamaged) { expectDamaged(fileOf(xmlcfg::kLargestFile + 1)); }

class AStoredConfiguration : public ALargeConfiguration {
 protected:
  void SetUp() override {
    ALargeConfiguration::SetUp();
    writeFile(kConfigFile, "<velmora/>");
    ASSERT_EQ(closeWithTextOf(1), xmlcfg::kDone);
    around_the_text_ = readFile(kConfigFile).size() - 1;
  }

  static int closeWithTextOf(std::size_t length) {
    Configuration writer(kWrite, kConfigFile);
    EXPECT_EQ(writer.setText("ch0", "devname", std::string(length, 'x')), xmlcfg::kDone);
    return writer.close();
  }
  std::size_t textThatFills(std::size_t size) const { return size - around_the_text_; }

 private:
  std::size_t around_the_text_ = 0;
};

TEST_F(AStoredConfiguration, MayBeAsLargeAsTheLimit) {
  EXPECT_EQ(closeWithTextOf(textThatFills(xmlcfg::kLargestFile)), xmlcfg::kDone);
  EXPECT_EQ(readFile(kConfigFile).size(), xmlcfg::kLargestFile);
  EXPECT_EQ(Configuration(kRead, kConfigFile).openResult(), xmlcfg::kOpened);
}

TEST_F(AStoredConfiguration, IsNotMadeLargerThanTheLimit) {
  const std::string before = readFile(kConfigFile);
  EXPECT_EQ(closeWithTextOf(textThatFills(xmlcfg::kLargestFile + 1)), xmlcfg::kNotStored);
  EXPECT_EQ(readFile(kConfigFile), before);
  EXPECT_THAT(namesIn(kConfigFolder), testing::ElementsAre("usbdev.conf"));
}

}  // namespace
