// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which camera a new one conflicts with, and which of the two waits.
#include "hotplug/camera_probe.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/text.h"
#include "plain_answers.h"

namespace usbdev {
namespace {

/// A new camera in port 1-1.1 on channel 3; channel 6 has an attached one on the same root port.
class ANewCamera : public testing::Test {
 protected:
  ANewCamera() {
    plain_answers = {};
    copyText(device.usbslot, "1-1.1");
    device.node = 2;
    std::memset(&report, '?', sizeof report);
    copyText(channels[3].profilename, "Door");
    other(6, 2);
  }

  ChannelSnapshot &other(int i, int profile) {
    channels[i].exists = 1;
    channels[i].vnode = 20 + i;
    channels[i].profile = profile;
    copyText(channels[i].usbslot, "1-1.6");
    copyText(channels[i].devname, ("Camera " + std::to_string(i)).c_str());
    copyText(channels[i].profilename, "Yard");
    return channels[i];
  }

  ConflictFindings find(bool supported = true) {
    HostAnswers host;
    return findConflicts(host, channels, 3, device, supported, report);
  }
  bool isReported() const { return report.channel != 0x3F3F3F3F; }

  _usbdev_des device{};
  ChannelSnapshots channels;
  _usbdev_conflict report;
};

TEST_F(ANewCamera, WaitsForOneWithAProfile) {
  EXPECT_EQ(find().parked_behind, 6);
  EXPECT_EQ(find().parks, -1);
  EXPECT_EQ(report.channel, 6);
  EXPECT_EQ(report.profile, 2);
  EXPECT_STREQ(report.profilename, "Yard");
  EXPECT_STREQ(report.devname, "Camera 6");
}

TEST_F(ANewCamera, OnAChannelWithAProfileMakesOneWithoutWait) {
  channels[3].profile = 1;
  channels[6].profile = -1;
  EXPECT_EQ(find().parks, 6);
  EXPECT_EQ(find().parked_behind, -1);
  EXPECT_EQ(report.channel, 3);
  EXPECT_EQ(report.profile, -1);
  EXPECT_STREQ(report.profilename, "Door");
}

TEST_F(ANewCamera, WithoutAProfileLeavesOneWithoutAlone) {
  channels[6].profile = -1;
  EXPECT_EQ(find().parks, -1);
  EXPECT_EQ(find().parked_behind, -1);
  EXPECT_FALSE(isReported());
}

TEST_F(ANewCamera, IsJudgedByTheFirstThatItConflictsWith) {
  other(4, -1);
  EXPECT_EQ(find().parked_behind, -1);
  EXPECT_STREQ(report.devname, "Camera 4");
}

TEST_F(ANewCamera, ConflictsWithNoneThatIsUnpluggedWaitsOrHasNoNode) {
  other(4, 0).exists = 0;
  other(5, 0).conflictch = 6;
  other(6, 0).vnode = -1;
  other(7, 0).conflictch = kUnsupported;
  EXPECT_EQ(find().parked_behind, -1);
  EXPECT_FALSE(isReported());
}

TEST_F(ANewCamera, DoesNotConflictWithItsOwnChannel) {
  other(3, 1);
  channels[6].exists = 0;
  EXPECT_EQ(find().parked_behind, -1);
}

TEST_F(ANewCamera, ThatIsUnsupportedWaitsWithoutAReport) {
  EXPECT_EQ(find(false).parked_behind, 6);
  EXPECT_FALSE(isReported());
}

TEST_F(ANewCamera, ThatIsUnsupportedIsReportedNeverthelessWhereItMakesOneWait) {
  channels[3].profile = 1;
  channels[6].profile = -1;
  EXPECT_EQ(find(false).parks, 6);
  EXPECT_EQ(report.channel, 3);
}

}  // namespace
}  // namespace usbdev
