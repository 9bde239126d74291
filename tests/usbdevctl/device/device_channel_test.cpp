// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/device_channel.h"

#include <gtest/gtest.h>

#include "some_cameras.h"
#include "text_fields.h"

namespace {

using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::hasChannel;

constexpr int kCamera = 1;
constexpr int kCard = 0;

_usbdev_des deviceAt(const char *port, bool plugged, int type = kCamera, const char *name = "Cam") {
  _usbdev_des device = {};
  device.devtype = type;
  device.plugged = plugged ? 1 : 0;
  setField(device.usbslot, port);
  setField(device.devname, name);
  return device;
}

/// A host all of whose channels are taken by attached cameras with profiles, the first of them at 3-1.
class AFullHost : public testing::Test {
 protected:
  AFullHost() {
    for (ChannelRow &row : rows_) row = someCamera(0, "5-1", 1).row;
    rows_[0].slot = "3-1";
    rows_[0].device = "Cam";
  }

  bool takes(const char *port, int type = kCamera, const char *name = "Cam") const {
    return hasChannel(rows_, deviceAt(port, true, type, name));
  }
  bool gives(const char *port, int type = kCamera, const char *name = "Cam") const {
    return hasChannel(rows_, deviceAt(port, false, type, name));
  }

  ChannelRows rows_;
};

TEST_F(AFullHost, HasNoChannelForANewDevice) { EXPECT_FALSE(takes("3-2")); }

TEST_F(AFullHost, KnowsItsOwnCameraAgain) {
  EXPECT_TRUE(takes("3-1"));
  EXPECT_FALSE(takes("3-1", kCamera, "Another"));
  EXPECT_FALSE(takes("3-2"));
}

TEST_F(AFullHost, TakesTheSoundCardOfAnAttachedCamera) {
  EXPECT_TRUE(takes("3-1", kCard, "Sound"));
  rows_[0].state = ChannelState::unplugged;
  EXPECT_FALSE(takes("3-1", kCard, "Sound"));
}

TEST_F(AFullHost, GivesAnAbsentCamerasChannelAwayOnceItHasNoProfile) {
  rows_[4].state = ChannelState::unplugged;
  EXPECT_FALSE(takes("3-2"));
  rows_[4].profile.reset();
  EXPECT_TRUE(takes("3-2"));
}

TEST_F(AFullHost, GivesAPortsChannelWithoutAProfileToAnotherCamera) {
  rows_[0].profile.reset();
  EXPECT_TRUE(takes("3-1", kCamera, "Another"));
  EXPECT_FALSE(takes("3-2"));
}

TEST_F(AFullHost, TakesADeviceInAChannelThatNeverHadOne) {
  rows_[9] = ChannelRow();
  EXPECT_TRUE(takes("3-2"));
}

TEST_F(AFullHost, LosesOnlyWhatIsAttached) {
  EXPECT_TRUE(gives("3-1"));
  EXPECT_FALSE(gives("3-2"));
  rows_[0].state = ChannelState::unplugged;
  EXPECT_FALSE(gives("3-1"));
}

TEST(AHostsOwnSoundCard, HasNoChannel) {
  const ChannelRows rows;
  EXPECT_TRUE(hasChannel(rows, deviceAt("3-1", true, kCard, "KA")));
  EXPECT_FALSE(hasChannel(rows, deviceAt("3-1", true, kCard, "KAB")));
  EXPECT_TRUE(hasChannel(rows, deviceAt("3-1", true, kCamera, "KAB")));
}

}  // namespace
