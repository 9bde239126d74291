// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A stored slot switch that is neither 0 nor 1: what must be on asks for 1, what must not be off asks for 0.
#include <array>
#include <string>

#include "contract_test.h"
#include "described_channel.h"

namespace contract {
namespace {

// Channel 4 serves profile 2 with a shared camera in port 3-1.2; its switch has the odd value.
class AStoredSwitch : public ContractTest, public testing::WithParamInterface<int> {
 protected:
  AStoredSwitch() {
    describe(host.channel(4)).slotSwitch(GetParam()).set("sharelink/ssid", "12345678").set("sharelink/token", "token");
  }
};

TEST_P(AStoredSwitch, OfNeitherZeroNorOneLetsNoWaitingChannelTakeOver) {
  host.channel(4).conflict(6);
  host.channel(6).profile(1).conflict(-1);
  int profile = -7;
  EXPECT_EQ(updateConflict(6, -1, 0, &profile), 0);
  EXPECT_EQ(profile, 99);
}

TEST_P(AStoredSwitch, OfNeitherZeroNorOneConflictsWithNoOtherCamera) {
  host.channel(6).attached("3-1.4", 6).profile(1);
  std::array<int, 10> answers;
  answers.fill(-7);
  EXPECT_EQ(getConflictCH(6, answers.data()), 0);
  EXPECT_EQ(answers[6], -7);
}

TEST_P(AStoredSwitch, OfNeitherZeroNorOneDoesNotMakeAPortThatIsSwitchedOnWait) {
  host.channel(6).attached("3-1.4", 6).profile(1);
  EXPECT_EQ(vl_set_usbslot_switch("3-1.4", "enable", nullptr), 0);
  EXPECT_EQ(host.channel(6).get("conflictch"), "-1");
  EXPECT_EQ(host.channel(4).get("conflictch"), "6");
}

TEST_P(AStoredSwitch, OfNeitherZeroNorOneLeavesTheCapabilitiesThere) {
  char text[16];
  EXPECT_EQ(vl_get_usbslot_video_cap("3-1.2", text), 0);
  EXPECT_STREQ(text, "0 1");
  EXPECT_EQ(vl_get_profile_video_cap(2, text), 0);
  EXPECT_EQ(vl_get_usbchn_audio_cap(2, text), 0);
}

TEST_P(AStoredSwitch, OfNeitherZeroNorOneLetsViewersIn) {
  int profile = -7;
  int code = -7;
  EXPECT_EQ(vl_validate_chliveview(2, &code), 0);
  EXPECT_EQ(code, -1);
  EXPECT_EQ(vl_ssid_auth("12345678", "token", &profile, &code), 0);
  EXPECT_EQ(code, -1);
}

TEST_P(AStoredSwitch, OfNeitherZeroNorOneIsReportedAsItIs) {
  _streaminfo info;
  EXPECT_EQ(vl_get_stream_info(2, &info), 0);
  EXPECT_EQ(info.slot_switch, GetParam());
  EXPECT_EQ(vl_get_usbslot_info("3-1.2", &info), 0);
  EXPECT_EQ(info.slot_switch, GetParam());
  _usbdev_entry rows[10];
  EXPECT_EQ(vl_get_devpf_list(rows), 0);
  EXPECT_EQ(rows[4].slot_switch, GetParam());
  EXPECT_EQ(vl_get_profile_list(rows), 0);
  EXPECT_EQ(rows[2].slot_switch, GetParam());
}

INSTANTIATE_TEST_SUITE_P(WithEveryOddValue, AStoredSwitch, testing::Values(2, -1, -2, 2147483647, -2147483647 - 1));

}  // namespace
}  // namespace contract
