// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The whole life of a share link, with a real configuration file and real links, in a host of the test's own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <platform/xmlcfg.h>
#include <usbdev/usbdev.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "private_host.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

const std::string kApplication = "/mnt/ext/opt/apps/Velmora2";

// Channel 4 serves profile 1 with a working camera, whose stream lies in directory 2.
class AProfile : public testing::Test {
 protected:
  void SetUp() override {
    makeEmptyFolder("/etc/config");
    makeEmptyFolder(kApplication);
    makeFolder(kApplication + "/hls/channel2");
    writeFile(kApplication + "/hls/channel2/playlist.m3u8", "the stream");
    channel("exists", 1);
    channel("profile", 1);
    channel("slot_switch", 1);
    channel("vnode", 0, "video");
    info.profile = 1;
  }

  static void channel(const char *key, int value, const char *group = nullptr) {
    void *config = nullptr;
    ASSERT_EQ(xmlcfg_open(1, "/etc/config/usbdev.conf", &config), 1);
    xmlcfg_set_int(config, value, "velmora", "ch4", group == nullptr ? key : group, group == nullptr ? nullptr : key);
    xmlcfg_close(config, 0);
  }
  void share(const char *password) {
    info.shrenable = 1;
    info.pwdenable = 1;
    strcpy(info.shrpwd, password);
    ASSERT_EQ(vl_set_share_link(&info), 0);
  }
  void endSharing() {
    info.shrenable = 0;
    ASSERT_EQ(vl_set_share_link(&info), 0);
  }
  void renew() { ASSERT_EQ(vl_renew_share_link(&info), 0); }

  static std::vector<std::string> links() {
    std::vector<std::string> names;
    for (const std::string &name : namesIn(kApplication)) {
      if (name != "hls") names.push_back(name);
    }
    return names;
  }
  static std::string streamBehind(const std::string &link) {
    return readFile(kApplication + "/" + link + "/playlist.m3u8");
  }
  // The code that a viewer with these meets.
  static int enter(const ShareLinkInfo &with) {
    int profile = -7;
    int code = -7;
    const int result = vl_ssid_auth(with.ssid, with.token, &profile, &code);
    EXPECT_EQ(result, code == -1 ? 0 : -1);
    return code;
  }

  ShareLinkInfo info{};
};

TEST_F(AProfile, ThatIsSharedHasALinkToItsStream) {
  share("secret");
  EXPECT_THAT(info.ssid, MatchesRegex("[0-9]{8}"));
  EXPECT_THAT(info.token, MatchesRegex("[0-9a-f]{32}"));
  EXPECT_THAT(info.hash_string, MatchesRegex("[0-9a-f]{32}"));
  EXPECT_STRNE(info.token, info.hash_string);
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  EXPECT_EQ(std::filesystem::read_symlink(kApplication + "/" + info.hash_string), kApplication + "/hls/channel2");
  EXPECT_EQ(streamBehind(info.hash_string), "the stream");
  EXPECT_EQ(enter(info), -1);
  EXPECT_EQ(vl_check_share_link_ssid(info.ssid), 1);
}

TEST_F(AProfile, ThatIsSharedIsReadBackWhole) {
  share("secret");
  ShareLinkInfo read{};
  read.profile = 1;
  EXPECT_EQ(vl_get_share_link(&read), 0);
  EXPECT_EQ(memcmp(&read, &info, sizeof info), 0);
}

TEST_F(AProfile, ThatIsSharedAgainKeepsItsLink) {
  share("secret");
  const std::string configuration = readFile("/etc/config/usbdev.conf");
  share("secret");
  EXPECT_EQ(readFile("/etc/config/usbdev.conf"), configuration);
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
}

TEST_F(AProfile, WithANewPasswordHasANewLinkInPlaceOfTheOld) {
  share("secret");
  const ShareLinkInfo old = info;
  share("other");
  EXPECT_STREQ(info.ssid, old.ssid);
  EXPECT_STRNE(info.hash_string, old.hash_string);
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  EXPECT_EQ(enter(old), 9000);
  EXPECT_EQ(enter(info), -1);
}

TEST_F(AProfile, WhoseLinkIsRenewedHasANewLinkInPlaceOfTheOld) {
  share("secret");
  const ShareLinkInfo old = info;
  renew();
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  EXPECT_NE(enter(old), -1);
  EXPECT_EQ(enter(info), -1);
  EXPECT_EQ(streamBehind(info.hash_string), "the stream");
}

TEST_F(AProfile, WhoseCameraIsUnpluggedIsNotShownUntilItIsBack) {
  share("secret");
  channel("exists", 0);
  EXPECT_EQ(enter(info), 9001);
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  channel("exists", 1);
  EXPECT_EQ(enter(info), -1);
}

TEST_F(AProfile, ThatIsNoLongerSharedHasNoLink) {
  share("secret");
  const ShareLinkInfo old = info;
  endSharing();
  EXPECT_THAT(links(), IsEmpty());
  EXPECT_EQ(enter(old), 9011);
  EXPECT_EQ(streamBehind("hls/channel2"), "the stream");
}

TEST_F(AProfile, ThatIsNotSharedGetsALinkByRenewalThatOpensForNoViewer) {
  renew();
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  EXPECT_EQ(enter(info), 9010);
}

TEST_F(AProfile, WhoseStreamFolderIsMissingLosesItsLinkNevertheless) {
  share("secret");
  std::filesystem::remove_all(kApplication + "/hls/channel2");
  endSharing();
  EXPECT_THAT(links(), IsEmpty());
}

TEST_F(AProfile, WhoseLinkIsMissingIsSharedAgainNevertheless) {
  share("secret");
  std::filesystem::remove(kApplication + "/" + info.hash_string);
  share("other");
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
}

TEST_F(AProfile, HasItsLinkRemovedByItsSectionOnly) {
  share("secret");
  EXPECT_EQ(remove_hash_link("ch3"), 0);
  EXPECT_THAT(links(), ElementsAre(info.hash_string));
  EXPECT_EQ(remove_hash_link("ch4"), 0);
  EXPECT_THAT(links(), IsEmpty());
  EXPECT_EQ(remove_hash_link("ch4"), 0);
}

TEST_F(AProfile, IsSharedThoughItsLinkCannotBeMade) {
  std::filesystem::remove_all(kApplication);
  share("secret");
  EXPECT_THAT(info.hash_string, Not(testing::StrEq("")));
  EXPECT_EQ(enter(info), -1);
}

}  // namespace
