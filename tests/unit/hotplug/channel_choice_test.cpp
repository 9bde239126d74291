// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channel a device that is plugged in or removed belongs to.
#include "hotplug/channel_choice.h"

#include <gtest/gtest.h>

#include <string>

#include "core/text.h"

namespace usbdev {
namespace {

constexpr char kPort[] = "1-1";
constexpr char kName[] = "HD Webcam";

/// A camera in port 1-1, and ten channels that were never used.
class AChoice : public testing::Test {
 protected:
  AChoice() {
    device.devtype = 1;
    copyText(device.usbslot, kPort);
    copyText(device.devname, kName);
  }

  ChannelSnapshot &used(int i, int exists, int profile, const std::string &port = kPort,
                        const std::string &name = kName) {
    channels[i].exists = exists;
    channels[i].profile = profile;
    copyText(channels[i].usbslot, port.c_str());
    copyText(channels[i].devname, name.c_str());
    return channels[i];
  }

  ChannelChoice plugged() const { return chooseForPlugged(channels, device); }
  ChannelChoice removed() const { return chooseForRemoved(channels, device); }

  _usbdev_des device{};
  ChannelSnapshots channels;
};

class APluggedCamera : public AChoice {};

TEST_F(APluggedCamera, TakesTheFirstChannelWhenNoneWasUsed) {
  EXPECT_EQ(plugged().channel, 0);
  EXPECT_EQ(plugged().profile, -1);
  EXPECT_FALSE(plugged().exact_match);
  EXPECT_EQ(plugged().replaced, -1);
}

TEST_F(APluggedCamera, TakesNoChannelOfAnotherPortThatIsAttachedOrHasAProfile) {
  used(0, 1, -1, "2-1");
  used(1, 0, 2, "2-2");
  EXPECT_EQ(plugged().channel, 2);
}

TEST_F(APluggedCamera, TakesAFreeChannelOfAnotherPort) {
  used(0, 0, -1, "2-1");
  EXPECT_EQ(plugged().channel, 0);
}

TEST_F(APluggedCamera, TakesTheProfileOfAChannelWithoutAPort) {
  used(0, 0, 2, "");
  EXPECT_EQ(plugged().channel, 0);
  EXPECT_EQ(plugged().profile, 2);
}

TEST_F(APluggedCamera, PrefersAChannelOfItsPort) {
  used(7, 0, -1, kPort, "Other");
  EXPECT_EQ(plugged().channel, 7);
  EXPECT_FALSE(plugged().exact_match);
}

TEST_F(APluggedCamera, PrefersTheLastOfTwoChannelsOfItsPortWithoutAProfile) {
  used(3, 0, -1);
  used(7, 0, -1);
  EXPECT_EQ(plugged().channel, 7);
}

TEST_F(APluggedCamera, IsKnownByItsPortAndNameWhereAProfileIs) {
  for (const int exists : {1, 0, -1}) {
    used(4, exists, 3);
    EXPECT_EQ(plugged().channel, 4) << exists;
    EXPECT_EQ(plugged().profile, 3) << exists;
    EXPECT_TRUE(plugged().exact_match) << exists;
  }
}

TEST_F(APluggedCamera, IsKnownBeforeAnyLaterChannelOfItsPort) {
  used(4, 1, 3);
  used(5, 0, -1);
  EXPECT_EQ(plugged().channel, 4);
}

TEST_F(APluggedCamera, ReplacesAnAttachedOneOfAnotherNameAndItsProfile) {
  used(4, 1, 3, kPort, "Other");
  EXPECT_EQ(plugged().channel, 0);
  EXPECT_EQ(plugged().replaced, 4);
  EXPECT_EQ(plugged().profile, -1);
}

TEST_F(APluggedCamera, TakesNoChannelOfItsPortAfterTheReplacedOne) {
  used(4, 1, 3, kPort, "Other");
  used(5, 0, -1);
  used(6, 1, 2);
  EXPECT_EQ(plugged().channel, 0);
  EXPECT_EQ(plugged().replaced, 4);
}

TEST_F(APluggedCamera, DoesNotChangeAnUnpluggedOneOfAnotherName) {
  used(4, 0, 3, kPort, "Other");
  EXPECT_EQ(plugged().channel, 0);
  EXPECT_EQ(plugged().replaced, -1);
}

TEST_F(APluggedCamera, GoesNowhereWhenEveryChannelIsTaken) {
  for (int i = 0; i < kChannels; ++i) used(i, 1, -1, "2-1");
  EXPECT_EQ(plugged().channel, -1);
  used(9, 0, -1, "2-1");
  EXPECT_EQ(plugged().channel, 9);
}

class APluggedSoundCard : public AChoice {
 protected:
  APluggedSoundCard() {
    device.devtype = 0;
    copyText(device.devname, "USB Audio");
  }
};

TEST_F(APluggedSoundCard, BelongsToTheAttachedCameraInItsPort) {
  used(4, 1, 3);
  EXPECT_EQ(plugged().channel, 4);
  EXPECT_TRUE(plugged().exact_match);
  EXPECT_EQ(plugged().replaced, -1);
}

TEST_F(APluggedSoundCard, TakesTheNameOfAChannelWithoutAProfileThatIsNotUnplugged) {
  used(4, 1, -1);
  EXPECT_STREQ(plugged().rename, kName);
  used(4, -1, -1);
  EXPECT_STREQ(plugged().rename, kName);
  used(4, 0, -1);
  EXPECT_EQ(plugged().rename, nullptr);
}

TEST_F(APluggedSoundCard, IsKnownByTheNameThatItTook) {
  used(4, 1, -1);
  used(6, 0, 2);
  EXPECT_EQ(plugged().channel, 6);
  used(6, 0, 2, kPort, "USB Audio");
  EXPECT_EQ(plugged().channel, 4);
}

class ARemovedDevice : public AChoice {};

TEST_F(ARemovedDevice, IsThatOfTheFirstAttachedChannelInItsPortUnderAnyName) {
  used(2, 0, 0);
  used(3, 1, 1, kPort, "Other");
  used(4, 1, 2);
  EXPECT_EQ(removed().channel, 3);
  EXPECT_EQ(removed().profile, 1);
}

TEST_F(ARemovedDevice, IsOnNoChannelThatIsNotAttached) {
  used(2, 0, 0);
  used(3, -1, 1);
  used(4, 2, 2);
  used(5, 1, 3, "2-1");
  EXPECT_EQ(removed().channel, -1);
  EXPECT_EQ(removed().profile, -1);
}

}  // namespace
}  // namespace usbdev
