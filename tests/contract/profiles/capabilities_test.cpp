// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a profile's camera and sound card can do.
#include <array>
#include <string>

#include "stream_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::IsEmpty;

class AProfilesCapabilities : public StreamTest {
 protected:
  AProfilesCapabilities() {
    channel().set("video/cap", "1 0").anode(3).set("audio/acap", "0 1");
    table.fill(untouched<_usbfmt_des>());
  }

  int formats(int profile = kProfile) {
    OutputCapture output;
    const int result = vl_get_usbchn_cap(profile, table.data());
    message = output.text();
    return result;
  }
  int video(int profile = kProfile) { return text(vl_get_profile_video_cap, profile); }
  int audio(int profile = kProfile) { return text(vl_get_usbchn_audio_cap, profile); }

  void expectNothing(int profile = kProfile) {
    EXPECT_EQ(formats(profile), -1);
    EXPECT_TRUE(isSameRecord(table[0], untouched<_usbfmt_des>()));
    EXPECT_EQ(video(profile), -1);
    EXPECT_EQ(cap, std::string(17, '#'));
    EXPECT_EQ(audio(profile), -1);
    EXPECT_EQ(cap, std::string(17, '#'));
    EXPECT_THAT(host.journal.commands(), IsEmpty());
  }

  std::array<_usbfmt_des, USBDEV_FORMATS> table{};
  std::string cap;
  std::string message;

 private:
  int text(int (*function)(int, char *), int profile) {
    cap = std::string(17, '#');
    OutputCapture output;
    const int result = function(profile, cap.data());
    message = output.text();
    EXPECT_EQ(cap[16], '#');
    return result;
  }
};

TEST_F(AProfilesCapabilities, AreTheFormatsOfItsCameraAskedWithoutTheLock) {
  EXPECT_EQ(formats(), 2);
  EXPECT_EQ(table[0].codec, kMjpeg);
  EXPECT_EQ(table[1].codec, kH264);
  EXPECT_THAT(host.journal.commands(), Contains(listingCommand(5)));
  EXPECT_EQ(host.journal.count("open r"), 2);
}

TEST_F(AProfilesCapabilities, AreTheResultOfTheQueryWhenItFails) {
  host.commands.cannotStart(listingCommand(5));
  EXPECT_EQ(formats(), -1);
}

TEST_F(AProfilesCapabilities, OfACameraWithoutFormatsAreNone) {
  host.camera(5, "3-1.2").listing("");
  EXPECT_EQ(formats(), 0);
}

TEST_F(AProfilesCapabilities, AreStoredAsTexts) {
  EXPECT_EQ(video(), 0);
  EXPECT_STREQ(cap.c_str(), "1 0");
  EXPECT_EQ(audio(), 0);
  EXPECT_STREQ(cap.c_str(), "0 1");
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AProfilesCapabilities, AreCutTo15Characters) {
  channel().set("video/cap", "0 1 0 1 0 1 0 1 0 1").set("audio/acap", std::string(16, 'a'));
  video();
  EXPECT_STREQ(cap.c_str(), "0 1 0 1 0 1 0 1");
  audio();
  EXPECT_EQ(std::string(cap.c_str()), std::string(15, 'a'));
}

TEST_F(AProfilesCapabilities, MayBeEmptyTexts) {
  host.config.erase("ch4/video/cap");
  EXPECT_EQ(video(), 0);
  EXPECT_STREQ(cap.c_str(), "");
}

TEST_F(AProfilesCapabilities, OfNoChannelAreNone) { expectNothing(1); }

TEST_F(AProfilesCapabilities, OfAnUnknownProfileAreNoneAndNothingIsOpened) {
  expectNothing(4);
  expectNothing(-1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AProfilesCapabilities, OfAnAbsentDeviceAreNone) {
  channel().exists(0);
  expectNothing();
  EXPECT_EQ(message, "");
}

TEST_F(AProfilesCapabilities, OfAPortThatIsSwitchedOffAreNone) {
  channel().slotSwitch(0);
  expectNothing();
}

TEST_F(AProfilesCapabilities, OfAPortWhoseSwitchWasNeverStoredAreShown) {
  host.config.erase("ch4/slot_switch");
  EXPECT_EQ(video(), 0);
}

TEST_F(AProfilesCapabilities, OfAWaitingDeviceAreShown) {
  channel().conflict(1);
  EXPECT_EQ(formats(), 2);
}

TEST_F(AProfilesCapabilities, OfAnAudioOnlyDeviceAreThoseOfItsSound) {
  channel().vnode(-1);
  EXPECT_EQ(formats(), -1);
  EXPECT_EQ(video(), -1);
  EXPECT_EQ(audio(), 0);
  EXPECT_STREQ(cap.c_str(), "0 1");
}

TEST_F(AProfilesCapabilities, OfAVideoOnlyDeviceAreThoseOfItsPicture) {
  channel().anode(-1);
  EXPECT_EQ(video(), 0);
  EXPECT_EQ(audio(), -1);
}

TEST_F(AProfilesCapabilities, AreNoneWhenTheFileCannotBeOpened) {
  for (const int open : {1, 2}) {
    host.config.failOpenNumber(open, -8);
    EXPECT_EQ(formats(), -1);
    EXPECT_EQ(message, openFailure(-8));
    host.config.failOpenNumber(open, -8);
    EXPECT_EQ(video(), -1);
    EXPECT_EQ(message, openFailure(-8));
    host.config.failOpenNumber(open, -8);
    EXPECT_EQ(audio(), -1);
    EXPECT_EQ(message, openFailure(-8));
  }
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AProfilesCapabilities, AreRefusedWithoutAPlaceForThem) {
  EXPECT_EQ(vl_get_usbchn_cap(kProfile, nullptr), -1);
  EXPECT_EQ(vl_get_profile_video_cap(kProfile, nullptr), -1);
  EXPECT_EQ(vl_get_usbchn_audio_cap(kProfile, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
