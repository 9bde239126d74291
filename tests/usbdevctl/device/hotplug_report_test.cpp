// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/hotplug_report.h"

#include <gmock/gmock.h>

#include "json_of.h"
#include "some_cameras.h"
#include "text_fields.h"

namespace {

using testing::EndsWith;
using usbdevctl::HotplugOutcome;
using usbdevctl::plugReport;
using usbdevctl::unplugReport;

HotplugOutcome chosen(int channel, int profile) {
  HotplugOutcome outcome;
  outcome.channel = channel;
  outcome.profile = profile;
  return outcome;
}

HotplugOutcome colliding(int channel, int other, int other_profile) {
  HotplugOutcome outcome = chosen(channel, -1);
  outcome.conflict.channel = other;
  outcome.conflict.profile = other_profile;
  setField(outcome.conflict.profilename, "Door\n");
  return outcome;
}

TEST(APluggedDevice, IsReportedWithChannelAndProfile) {
  EXPECT_EQ(plugReport(chosen(3, 1), {}).text(false),
            "channel     3\n"
            "profile     1\n"
            "conflict    none\n");
  EXPECT_EQ(jsonOf(plugReport(chosen(3, 1), {})), "{\"schema\":1,\"channel\":3,\"profile\":1,\"conflict\":null}\n");
}

TEST(APluggedDevice, WithoutAChannelIsReportedAsNone) {
  EXPECT_EQ(plugReport(HotplugOutcome(), {}).text(false), "channel     none\nprofile     none\nconflict    none\n");
  EXPECT_EQ(jsonOf(plugReport(HotplugOutcome(), {})),
            "{\"schema\":1,\"channel\":null,\"profile\":null,\"conflict\":null}\n");
}

TEST(APluggedCamera, ThatWaitsIsReportedWithTheCameraThatItWaitsFor) {
  const HotplugOutcome outcome = colliding(1, 0, 2);
  EXPECT_EQ(plugReport(outcome, someCamera(0, "3-1", 2)).text(false),
            "channel     1\n"
            "profile     none\n"
            "conflict    waits for channel 0  3-1  \"USB Camera\"  profile 2\n");
  EXPECT_THAT(jsonOf(plugReport(outcome, {})),
              EndsWith(R"("conflict":{"channel":0,"profile":2,"profile_name":"Door\n","parked":true}})"
                       "\n"));
}

TEST(APluggedCamera, ThatMakesAnotherWaitIsReportedAsThat) {
  const HotplugOutcome outcome = colliding(1, 1, -1);
  EXPECT_EQ(plugReport(outcome, someCamera(0, "3-1", 2)).text(false),
            "channel     1\n"
            "profile     none\n"
            "conflict    another camera at this root port now waits for this channel\n");
  EXPECT_THAT(jsonOf(plugReport(outcome, {})),
              EndsWith(R"("conflict":{"channel":1,"profile":null,"profile_name":"Door\n","parked":false}})"
                       "\n"));
}

TEST(AnUnpluggedCamera, IsReportedWithItsNameAndNode) {
  HotplugOutcome outcome = chosen(2, -1);
  setField(outcome.device, "Cam\033");
  outcome.video_node = 4;
  EXPECT_EQ(unplugReport(outcome).text(false),
            "channel     2\n"
            "profile     none\n"
            "device      Cam\\x1b\n"
            "video node  4\n");
  EXPECT_EQ(jsonOf(unplugReport(outcome)),
            "{\"schema\":1,\"channel\":2,\"profile\":null,\"device\":\"Cam\\u001b\",\"video_node\":4}\n");
}

}  // namespace
