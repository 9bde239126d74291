#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "configuration.h"
#include "private_host.h"

namespace {

const std::string kFolder = std::string(kWorkFolder) + "/config";
const std::string kFile = kFolder + "/usbdev.conf";

class ALargeConfiguration : public testing::Test {
 protected:
  void SetUp() override { make_empty_folder(kFolder); }
};

void expect_damaged(const std::string &content) {
  write_file(kFile, content);
  EXPECT_EQ(Configuration(kRead, kFile).open_result(), xmlcfg::kDamaged);
  EXPECT_EQ(Configuration(kWrite, kFile).open_result(), xmlcfg::kDamaged);
  EXPECT_EQ(read_file(kFile), content);
  EXPECT_THAT(names_in(kFolder), testing::ElementsAre("usbdev.conf"));
}

std::string nested(std::size_t depth) {
  std::string text = "<velmora>";
  for (std::size_t level = 1; level < depth; ++level) text += "<a>";
  for (std::size_t level = 1; level < depth; ++level) text += "</a>";
  return text + "</velmora>";
}

constexpr std::size_t kDepthOfASubKey = 4;

TEST_F(ALargeConfiguration, MayHaveElementsAsDeepAsSubKeys) {
  write_file(kFile, nested(kDepthOfASubKey));
  EXPECT_EQ(Configuration(kRead, kFile).open_result(), xmlcfg::kOpened);
}

TEST_F(ALargeConfiguration, WithElementsDeeperThanSubKeysIsDamaged) {
  expect_damaged(nested(kDepthOfASubKey + 1));
  expect_damaged("<velmora><a/>" + nested(kDepthOfASubKey) + "</velmora>");
}

TEST_F(ALargeConfiguration, OfNestedElementsIsDamaged) { expect_damaged(nested(20000)); }

/* A file of the size, with one value that fills it up. */
std::string file_of(std::size_t size) {
  const std::string before = "<velmora><ch0><exists>1</exists><devname>";
  const std::string after = "</devname></ch0></velmora>";
  return before + std::string(size - before.size() - after.size(), 'x') + after;
}

TEST_F(ALargeConfiguration, MayBeAsLargeAsTheLimit) {
  write_file(kFile, file_of(xmlcfg::kLargestFile));
  EXPECT_EQ(Configuration(kRead, kFile).number("ch0", "exists"), 1);
}

TEST_F(ALargeConfiguration, AboveTheLimitIsDamaged) { expect_damaged(file_of(xmlcfg::kLargestFile + 1)); }

class AStoredConfiguration : public ALargeConfiguration {
 protected:
  void SetUp() override {
    ALargeConfiguration::SetUp();
    write_file(kFile, "<velmora/>");
    ASSERT_EQ(close_with_text_of(1), xmlcfg::kDone);
    around_the_text_ = read_file(kFile).size() - 1;
  }

  static int close_with_text_of(std::size_t length) {
    Configuration writer(kWrite, kFile);
    EXPECT_EQ(writer.set_text("ch0", "devname", std::string(length, 'x')), xmlcfg::kDone);
    return writer.close();
  }
  std::size_t text_that_fills(std::size_t size) const { return size - around_the_text_; }

 private:
  std::size_t around_the_text_ = 0;
};

TEST_F(AStoredConfiguration, MayBeAsLargeAsTheLimit) {
  EXPECT_EQ(close_with_text_of(text_that_fills(xmlcfg::kLargestFile)), xmlcfg::kDone);
  EXPECT_EQ(read_file(kFile).size(), xmlcfg::kLargestFile);
  EXPECT_EQ(Configuration(kRead, kFile).open_result(), xmlcfg::kOpened);
}

TEST_F(AStoredConfiguration, IsNotMadeLargerThanTheLimit) {
  const std::string before = read_file(kFile);
  EXPECT_EQ(close_with_text_of(text_that_fills(xmlcfg::kLargestFile + 1)), xmlcfg::kNotStored);
  EXPECT_EQ(read_file(kFile), before);
  EXPECT_THAT(names_in(kFolder), testing::ElementsAre("usbdev.conf"));
}

}  // namespace
