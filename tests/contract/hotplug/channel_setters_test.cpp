// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The manager's small setters, addressed by profile.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AProfileWithSound : public ContractTest {
 protected:
  AProfileWithSound() { host.channel(4).exists(1).profile(2).anode(3).set("audio/volume", 70); }

  Lines volumeCalls() { return host.journal.only({"volume"}); }
};

TEST_F(AProfileWithSound, RecordsItsStreamParameterState) {
  EXPECT_EQ(mn_set_usbchn_sps(2, 9), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/spsstate=9"));
}

TEST_F(AProfileWithSound, OutsideZeroToThreeIsRefusedWithoutAnOpen) {
  for (const int profile : {-1, 4, 5}) {
    EXPECT_EQ(mn_set_usbchn_sps(profile, 1), -1);
    EXPECT_EQ(mn_set_usbdev_volume(profile), -1);
  }
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AProfileWithSound, FailsToRecordWhenTheFileCannotBeWritten) {
  host.config.failWriteOpens(-7);
  OutputCapture output;
  EXPECT_EQ(mn_set_usbchn_sps(2, 9), -1);
  EXPECT_EQ(output.text(), openFailure(-7));
}

TEST_F(AProfileWithSound, PassesItsStoredVolumeToItsCard) {
  host.sound.card(3, 1, 1, 1, "Microphone");
  for (const int volume : {1, 50, 100}) {
    host.journal.clear();
    host.channel(4).set("audio/volume", volume);
    EXPECT_EQ(mn_set_usbdev_volume(2), 0);
    EXPECT_THAT(volumeCalls(), ElementsAre("volume 3 " + std::to_string(volume)));
  }
}

TEST_F(AProfileWithSound, PassesAVolumeOfZeroAsMinusOne) {
  host.sound.card(3, 1, 1, 1, "Microphone");
  host.channel(4).set("audio/volume", 0);
  mn_set_usbdev_volume(2);
  EXPECT_THAT(volumeCalls(), ElementsAre("volume 3 -1"));
}

TEST_F(AProfileWithSound, ThatWasNeverSetIsAtFifty) {
  host.config.erase("ch4/audio/volume");
  mn_set_usbdev_volume(2);
  EXPECT_THAT(volumeCalls(), ElementsAre("volume 3 50"));
}

TEST_F(AProfileWithSound, IsSetWithTheFileClosed) {
  mn_set_usbdev_volume(2);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "open r", "close", "volume 3 70"));
}

TEST_F(AProfileWithSound, IsNotChangedWhenTheFileCannotBeRead) {
  host.config.failOpenNumber(2, -7);
  OutputCapture output;
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  EXPECT_EQ(output.text(), openFailure(-7));
  EXPECT_THAT(volumeCalls(), IsEmpty());
}

TEST_F(AProfileWithSound, ReturnsWhatTheHostReturns) {
  EXPECT_EQ(mn_set_usbdev_volume(2), -1) << "the host knows no such card";
  EXPECT_THAT(volumeCalls(), ElementsAre("volume 3 70"));
}

TEST_F(AProfileWithSound, DoesNotAskTheHostWithoutACardOrADevice) {
  host.channel(4).anode(-1);
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  host.channel(4).anode(3).exists(0);
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  EXPECT_THAT(volumeCalls(), IsEmpty());
}

TEST_F(AProfileWithSound, ThatNoChannelServesIsRefused) {
  EXPECT_EQ(mn_set_usbchn_sps(3, 1), -1);
  EXPECT_EQ(mn_set_usbdev_volume(3), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfileWithSound, TakesAVolumeThatWasNeverStoredAsFifty) {
  host.sound.card(3, 1, 1, 1, "Microphone");
  host.config.erase("ch4/audio/volume");
  EXPECT_EQ(mn_set_usbdev_volume(2), 0);
  EXPECT_THAT(volumeCalls(), ElementsAre("volume 3 50"));
}

TEST_F(AProfileWithSound, HasNoneWhereItWasNeverStored) {
  host.config.erase("ch4/audio/anode");
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  host.channel(4).anode(3);
  host.config.erase("ch4/exists");
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  EXPECT_THAT(volumeCalls(), IsEmpty());
}

TEST_F(AProfileWithSound, OfADisplacedCameraIsSet) {
  host.sound.card(3, 1, 1, 1, "Microphone");
  host.channel(4).exists(-1);
  EXPECT_EQ(mn_set_usbdev_volume(2), 0);
}

TEST_F(AProfileWithSound, OnCardZeroIsSet) {
  host.sound.card(0, 1, 1, 1, "Microphone");
  host.channel(4).anode(0);
  EXPECT_EQ(mn_set_usbdev_volume(2), 0);
}

TEST_F(AProfileWithSound, FailsWhenItIsFoundButCannotBeRead) {
  host.config.failOpenNumber(2, -7);
  OutputCapture output;
  EXPECT_EQ(mn_set_usbdev_volume(2), -1);
  EXPECT_EQ(output.text(), openFailure(-7));
  EXPECT_THAT(volumeCalls(), IsEmpty());
}

}  // namespace
}  // namespace contract
