// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What sits in a USB slot.
#include <cstring>
#include <string>

#include "contract_test.h"
#include "described_channel.h"
#include "record_text.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class APort : public ContractTest {
 protected:
  int readCap(const std::string &slot) {
    cap = std::string(17, '#');
    OutputCapture output;
    const int result = vl_get_usbslot_video_cap(slot.c_str(), cap.data());
    message = output.text();
    EXPECT_EQ(cap[16], '#');
    return result;
  }

  int readInfo(const std::string &slot) {
    info = untouched<_streaminfo>();
    OutputCapture output;
    const int result = vl_get_usbslot_info(slot.c_str(), &info);
    message = output.text();
    return result;
  }

  void expectPresets() const {
    EXPECT_EQ(info.channel, -1);
    EXPECT_EQ(info.stream_type, 0);
    EXPECT_EQ(info.slot_switch, 1);
    const std::string fetype("\0\0\0\0ZZZZZZZZZZZZ", 16);
    EXPECT_EQ(std::string(info.fetype, sizeof info.fetype), fetype);
    EXPECT_EQ(videoText(info), kPresetVideo);
    EXPECT_EQ(audioText(info), kPresetAudio);
    EXPECT_EQ(pictureText(info), pictureText(untouched<_streaminfo>()));
  }

  bool isTextUntouched() const { return cap == std::string(17, '#'); }

  HostChannel channel() { return host.channel(4); }

  std::string cap;
  _streaminfo info = untouched<_streaminfo>();
  std::string message;
};

TEST_F(APort, HasTheCodecsOfItsCamera) {
  describe(channel());
  EXPECT_EQ(readCap("3-1.2"), 0);
  EXPECT_STREQ(cap.c_str(), "0 1");
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(APort, OfTheLastChannelHasTheCodecsOfItsCamera) {
  describe(host.channel(9));
  EXPECT_EQ(readCap("3-1.2"), 0);
  EXPECT_STREQ(cap.c_str(), "0 1");
}

TEST_F(APort, HasLongerCodecsCutTo15Characters) {
  describe(channel()).set("video/cap", "0 1 0 1 0 1 0 1 0 1");
  readCap("3-1.2");
  EXPECT_STREQ(cap.c_str(), "0 1 0 1 0 1 0 1");
}

TEST_F(APort, WithoutADeviceHasNoCodecsWhichIsASuccess) {
  describe(channel()).exists(0);
  for (const char *slot : {"3-1.2", "3-1", "3-1.21", ""}) {
    EXPECT_EQ(readCap(slot), 0);
    EXPECT_TRUE(isTextUntouched());
  }
}

TEST_F(APort, WithoutACameraFailsToHaveCodecs) {
  describeAudioOnly(channel());
  EXPECT_EQ(readCap("3-1.2"), -1);
  EXPECT_TRUE(isTextUntouched());
}

TEST_F(APort, ThatIsSwitchedOffFailsToHaveCodecs) {
  describe(channel()).slotSwitch(0);
  EXPECT_EQ(readCap("3-1.2"), -1);
  EXPECT_TRUE(isTextUntouched());
}

TEST_F(APort, WhoseSwitchWasNeverStoredIsOn) {
  channel().attached("3-1.2", 1).set("video/cap", "1");
  EXPECT_EQ(readCap("3-1.2"), 0);
  EXPECT_STREQ(cap.c_str(), "1");
}

TEST_F(APort, OfTwoChannelsHasTheCodecsOfTheFirst) {
  describe(channel());
  describe(host.channel(6)).set("video/cap", "1");
  readCap("3-1.2");
  EXPECT_STREQ(cap.c_str(), "0 1");
  channel().vnode(-1);
  EXPECT_EQ(readCap("3-1.2"), -1);
}

TEST_F(APort, HasNoCodecsWhenTheFileCannotBeOpened) {
  describe(channel());
  host.config.failReadOpens(-9);
  EXPECT_EQ(readCap("3-1.2"), -1);
  EXPECT_EQ(message, openFailure(-9));
  EXPECT_TRUE(isTextUntouched());
}

TEST_F(APort, HasTheStreamOfItsDevice) {
  describe(channel());
  EXPECT_EQ(readInfo("3-1.2"), 0);
  EXPECT_EQ(info.channel, 4);
  EXPECT_EQ(info.stream_type, 3);
  EXPECT_EQ(videoText(info), "node 5 profile 2 codec 0 enable 1 sps 1 1920x1080@15 fetype 7");
  EXPECT_EQ(audioText(info), "node 3 profile 2 codec 1 enable 6 48000 Hz 2 ch 96000 bit/s volume 80");
  EXPECT_EQ(pictureText(info), "osd 0 flip 1 mirror 2 ldsp 3");
}

TEST_F(APort, OfADeviceWithNothingStoredHasTheDefaults) {
  channel().exists(1).slot("3-1.2");
  readInfo("3-1.2");
  EXPECT_EQ(info.channel, 4);
  EXPECT_EQ(info.slot_switch, 1);
  EXPECT_EQ(videoText(info), kPresetVideo);
  EXPECT_EQ(audioText(info), kPresetAudio);
  EXPECT_EQ(pictureText(info), "osd 1 flip 0 mirror 0 ldsp 0");
}

TEST_F(APort, HasItsCamerasTypeInAFieldThatWasClearedBefore) {
  describe(channel());
  readInfo("3-1.2");
  EXPECT_EQ(std::string(info.fetype, sizeof info.fetype), "7" + std::string(15, '\0'));
}

TEST_F(APort, DoesNotChangeHeaderReservedFieldsAndTagOfTheRecord) {
  describe(channel());
  readInfo("3-1.2");
  const _streaminfo before = untouched<_streaminfo>();
  EXPECT_EQ(memcmp(info.header, before.header, sizeof info.header), 0);
  EXPECT_EQ(info.reserved1, before.reserved1);
  EXPECT_EQ(memcmp(info.reserved2, before.reserved2, sizeof info.reserved2), 0);
  EXPECT_EQ(memcmp(info.vtag, before.vtag, sizeof info.vtag), 0);
}

TEST_F(APort, HasItsStreamEvenWhenItIsSwitchedOffOrWaits) {
  describe(channel()).slotSwitch(0).conflict(1);
  EXPECT_EQ(readInfo("3-1.2"), 0);
  EXPECT_EQ(info.slot_switch, 0);
  EXPECT_EQ(info.vnode, 5);
}

TEST_F(APort, HasTheTypeOfItsNodesWithAudioOnOrOff) {
  describeAudioOnly(channel()).set("audio/aenable", 0);
  readInfo("3-1.2");
  EXPECT_EQ(info.stream_type, 1);
}

TEST_F(APort, OfTwoChannelsHasTheStreamOfTheLastWithATypeOfItsOwn) {
  describe(channel());
  host.channel(6).exists(1).slot("3-1.2");
  readInfo("3-1.2");
  EXPECT_EQ(info.channel, 6);
  EXPECT_EQ(info.vnode, -1);
  EXPECT_EQ(info.stream_type, 0);
}

TEST_F(APort, WithoutADeviceHasThePresetsWhichIsASuccess) {
  describe(channel()).exists(0);
  EXPECT_EQ(readInfo("3-1.2"), 0);
  expectPresets();
}

TEST_F(APort, HasThePresetsWhenTheFileCannotBeOpened) {
  describe(channel());
  host.config.failReadOpens(-9);
  EXPECT_EQ(readInfo("3-1.2"), -1);
  EXPECT_EQ(message, openFailure(-9));
  expectPresets();
}

TEST_F(APort, WithANameLongerThanAnyPortHasNoDevice) {
  describe(channel()).slot(std::string(200, '1'));
  readInfo(std::string(200, '1'));
  EXPECT_EQ(info.channel, -1);
  readInfo(std::string(127, '1'));
  EXPECT_EQ(info.channel, 4);
}

TEST_F(APort, IsRefusedWithoutANameOrAPlaceForTheAnswer) {
  EXPECT_EQ(vl_get_usbslot_info(nullptr, &info), -1);
  EXPECT_EQ(vl_get_usbslot_info("3-1", nullptr), -1);
  EXPECT_EQ(vl_get_usbslot_video_cap(nullptr, cap.data()), -1);
  EXPECT_EQ(vl_get_usbslot_video_cap("3-1", nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
