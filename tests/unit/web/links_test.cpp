// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Where a stream's link lies and where it leads.
#include "web/links.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/execution.h"
#include "plain_config.h"

namespace usbdev {
namespace {

std::vector<std::string> done;  // what the host was asked to do

}  // namespace

int makeLink(const char *target, const char *link) {
  done.push_back(std::string(target) + " <- " + link);
  return 0;
}

int removePath(const char *path) {
  done.push_back(std::string("remove ") + path);
  return 0;
}

namespace {

const std::string kFolder = "/mnt/ext/opt/apps/Velmora2/";

class ALink : public testing::Test {
 protected:
  ALink() { done.clear(); }
};

TEST_F(ALink, LeadsFromItsNameToTheDirectoryOfItsProfilesNumberPlusOne) {
  makeStreamLink(0, "abc");
  makeStreamLink(3, "abc");
  EXPECT_THAT(done, testing::ElementsAre(kFolder + "hls/channel1 <- " + kFolder + "abc",
                                         kFolder + "hls/channel4 <- " + kFolder + "abc"));
}

TEST_F(ALink, HasTheLongestNameThatAChannelHolds) {
  const std::string name(kLinkNameSize - 1, 'n');
  makeStreamLink(0, name.c_str());
  takeBackStreamLink(name.c_str());
  EXPECT_THAT(done, testing::ElementsAre(kFolder + "hls/channel1 <- " + kFolder + name, "remove " + kFolder + name));
}

TEST_F(ALink, WithoutANameIsNotMadeAndNotRemoved) {
  makeStreamLink(2, "");
  takeBackStreamLink("");
  removeStreamLink("");
  EXPECT_THAT(done, testing::IsEmpty());
}

TEST_F(ALink, ThatIsNotThereIsNotRemoved) {
  removeStreamLink("a name that nobody made");
  EXPECT_THAT(done, testing::IsEmpty());
}

TEST(AWithdrawnShareLink, HasNoIdNoTokenAndNoName) {
  PlainConfig config = {{"ch2/sharelink/ssid", "12345678"},
                        {"ch2/sharelink/token", "token"},
                        {"ch2/sharelink/hash_string", "name"},
                        {"ch2/sharelink/shrpwd", "secret"}};
  withdrawShareLink(opened(config).channel(2));
  EXPECT_EQ(config, (PlainConfig{{"ch2/sharelink/ssid", ""},
                                 {"ch2/sharelink/token", ""},
                                 {"ch2/sharelink/hash_string", ""},
                                 {"ch2/sharelink/shrpwd", "secret"}}));
}

}  // namespace
}  // namespace usbdev
