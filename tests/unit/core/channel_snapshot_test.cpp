// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a snapshot of the channels holds, by who reads it, and what it makes of missing keys.
#include "core/channel_snapshot.h"

#include <gtest/gtest.h>

#include <string>

#include "plain_config.h"

namespace usbdev {
namespace {

/// Channel 4 is fully described; channel 9 was never used.
class ASnapshot : public testing::Test {
 protected:
  ASnapshot() {
    config = {{"ch4/exists", "1"},
              {"ch4/profile", "2"},
              {"ch4/usbslot", "3-1.2"},
              {"ch4/devname", "HD Webcam"},
              {"ch4/profilename", "Front door"},
              {"ch4/createtime", "2024-03-05 08:15:00"},
              {"ch4/slot_switch", "1"},
              {"ch4/conflictch", "6"},
              {"ch4/hlspath", "abcdef"},
              {"ch4/video/vnode", "5"},
              {"ch4/video/vcodec", "0"},
              {"ch4/audio/anode", "3"},
              {"ch4/audio/acap", "1"},
              {"ch4/sharelink/shrenable", "1"},
              {"ch4/sharelink/hash_string", "0123456789"}};
  }

  PlainConfig config;
  ChannelSnapshots channels;
};

TEST_F(ASnapshot, ForComparingHasWhatDistinguishesChannels) {
  readForComparing(opened(config), channels);
  const ChannelSnapshot &channel = channels[4];
  EXPECT_EQ(channel.exists, 1);
  EXPECT_EQ(channel.profile, 2);
  EXPECT_STREQ(channel.usbslot, "3-1.2");
  EXPECT_STREQ(channel.devname, "HD Webcam");
  EXPECT_STREQ(channel.profilename, "Front door");
  EXPECT_STREQ(channel.createtime, "2024-03-05 08:15:00");
  EXPECT_EQ(channel.slot_switch, 1);
  EXPECT_EQ(channel.vcodec, Codec::h264);
  EXPECT_EQ(channel.vnode, 5);
  EXPECT_EQ(channel.conflictch, 6);
  EXPECT_EQ(channel.anode, 3);
  EXPECT_STREQ(channel.acap, "1");
}

TEST_F(ASnapshot, ForComparingHoldsNoLinks) {
  readForComparing(opened(config), channels);
  EXPECT_STREQ(channels[4].hlspath, "");
  EXPECT_STREQ(channels[4].share_link, "");
}

TEST_F(ASnapshot, ForComparingTakesMissingKeysAsAnEmptyChannel) {
  readForComparing(opened(config), channels);
  const ChannelSnapshot &channel = channels[9];
  EXPECT_EQ(channel.exists, 0);
  EXPECT_EQ(channel.profile, -1);
  EXPECT_STREQ(channel.usbslot, "");
  EXPECT_EQ(channel.slot_switch, -1);
  EXPECT_EQ(channel.vcodec, Codec::mjpeg);
  EXPECT_EQ(channel.vnode, -1);
  EXPECT_EQ(channel.conflictch, -1);
  EXPECT_EQ(channel.anode, 0);
}

TEST_F(ASnapshot, TakesASwitchThatWasNeverStoredAsOnAndUnknown) {
  readForComparing(opened(config), channels);
  EXPECT_TRUE(channels[9].switched_on);
  EXPECT_EQ(channels[9].slot_switch, -1);
}

TEST_F(ASnapshot, TakesASwitchThatIsNot1AsOff) {
  config["ch4/slot_switch"] = "0";
  config["ch5/slot_switch"] = "2";
  readForComparing(opened(config), channels);
  EXPECT_FALSE(channels[4].switched_on);
  EXPECT_FALSE(channels[5].switched_on);
}

TEST_F(ASnapshot, CutsTextsToTheirSizes) {
  config["ch4/usbslot"] = std::string(127, 's');
  config["ch5/usbslot"] = std::string(128, 's');
  config["ch4/audio/acap"] = std::string(15, 'a');
  config["ch5/audio/acap"] = std::string(16, 'a');
  readForComparing(opened(config), channels);
  EXPECT_EQ(channels[4].usbslot, std::string(127, 's'));
  EXPECT_EQ(channels[5].usbslot, std::string(127, 's'));
  EXPECT_EQ(channels[4].acap, std::string(15, 'a'));
  EXPECT_EQ(channels[5].acap, std::string(15, 'a'));
}

TEST_F(ASnapshot, ForTheScanHasOnlyPresenceConflictPortAndName) {
  readForScan(opened(config), channels);
  const ChannelSnapshot &channel = channels[4];
  EXPECT_EQ(channel.exists, 1);
  EXPECT_EQ(channel.conflictch, 6);
  EXPECT_STREQ(channel.usbslot, "3-1.2");
  EXPECT_STREQ(channel.devname, "HD Webcam");
  EXPECT_EQ(channel.profile, -1);
  EXPECT_EQ(channel.vnode, -1);
}

TEST_F(ASnapshot, ForTheScanShowsAChannelThatWasNeverConfigured) {
  config["ch5/exists"] = "0";
  readForScan(opened(config), channels);
  EXPECT_EQ(channels[9].exists, kNeverConfigured);
  EXPECT_EQ(channels[5].exists, 0);
}

TEST_F(ASnapshot, ForTheStartUpHoldsSwitchProfileAndLinks) {
  readForStartUp(opened(config), channels);
  const ChannelSnapshot &channel = channels[4];
  EXPECT_EQ(channel.exists, 1);
  EXPECT_EQ(channel.slot_switch, 1);
  EXPECT_EQ(channel.profile, 2);
  EXPECT_STREQ(channel.hlspath, "abcdef");
  EXPECT_STREQ(channel.share_link, "0123456789");
  EXPECT_STREQ(channel.usbslot, "");
}

TEST_F(ASnapshot, ForTheStartUpLeavesAChannelThatWasNeverConfiguredEmpty) {
  config["ch9/profile"] = "1";
  config["ch9/hlspath"] = "left over";
  readForStartUp(opened(config), channels);
  EXPECT_EQ(channels[9].exists, kNeverConfigured);
  EXPECT_EQ(channels[9].profile, -1);
  EXPECT_STREQ(channels[9].hlspath, "");
}

TEST_F(ASnapshot, ForTheStartUpHoldsNoShareLinkThatIsDisabled) {
  config["ch4/sharelink/shrenable"] = "0";
  readForStartUp(opened(config), channels);
  EXPECT_STREQ(channels[4].share_link, "");
}

TEST(AChannel, HasACameraWhenADeviceWithAVideoNodeIsAttached) {
  ChannelSnapshot channel;
  EXPECT_FALSE(channel.hasCamera());
  channel.exists = 1;
  EXPECT_FALSE(channel.hasCamera());
  channel.vnode = 0;
  EXPECT_TRUE(channel.hasCamera());
  channel.exists = 0;
  EXPECT_FALSE(channel.hasCamera());
}

TEST(AChannel, HasACameraThatMayStreamWhenItDoesNotWait) {
  ChannelSnapshot channel;
  channel.exists = 1;
  channel.vnode = 0;
  EXPECT_TRUE(channel.hasUnparkedCamera());
  channel.conflictch = 0;
  EXPECT_FALSE(channel.hasUnparkedCamera());
  channel.conflictch = kUnsupported;
  EXPECT_FALSE(channel.hasUnparkedCamera());
}

}  // namespace
}  // namespace usbdev
