// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the settings of a profile are.
#include <cstring>
#include <string>

#include "contract_test.h"
#include "described_channel.h"
#include "record_text.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

int query(int profile, _streaminfo *info) { return vl_get_stream_info(profile, info); }
int query(int profile, _profile_info *info) { return vl_get_profile_info(profile, info); }

void expectOwnPresets(const _streaminfo &info) { EXPECT_STREQ(info.vtag, ""); }
void expectOwnPresets(const _profile_info &info) {
  EXPECT_EQ(info.exists, -1);
  EXPECT_STREQ(info.profilename, "");
  EXPECT_STREQ(info.usbslot, "");
  EXPECT_STREQ(info.devname, "");
  EXPECT_STREQ(info.acap, "");
}

// The record that describes profile 2, which channel 4 is to serve.
template <typename Record>
class AProfilesRecord : public ContractTest {
 protected:
  int read(int profile = 2) {
    info = untouched<Record>();
    OutputCapture output;
    const int result = query(profile, &info);
    message = output.text();
    return result;
  }

  void expectPresets() const {
    EXPECT_EQ(info.stream_type, 0);
    EXPECT_EQ(videoText(info), kPresetVideo);
    EXPECT_EQ(audioText(info), kPresetAudio);
    EXPECT_EQ(pictureText(info), kPresetPicture);
    expectOwnPresets(info);
  }

  HostChannel channel() { return host.channel(4); }

  Record info = untouched<Record>();
  std::string message;
};

using EitherRecord = testing::Types<_streaminfo, _profile_info>;
TYPED_TEST_SUITE(AProfilesRecord, EitherRecord);

TYPED_TEST(AProfilesRecord, IsPresetWhereNoChannelServesTheProfile) {
  EXPECT_EQ(this->read(), -1);
  this->expectPresets();
}

TYPED_TEST(AProfilesRecord, IsPresetForAnUnknownProfileWithNothingOpened) {
  for (const int profile : {-1, 4}) {
    EXPECT_EQ(this->read(profile), -1);
    this->expectPresets();
  }
  EXPECT_THAT(this->host.journal.lines(), IsEmpty());
}

TYPED_TEST(AProfilesRecord, IsPresetWhenTheFileCannotBeOpened) {
  describe(this->channel());
  for (const int open : {1, 2}) {
    this->host.config.failOpenNumber(open, -5);
    EXPECT_EQ(this->read(), -1);
    EXPECT_EQ(this->message, openFailure(-5));
    this->expectPresets();
  }
}

class AProfilesStream : public AProfilesRecord<_streaminfo> {};

TEST_F(AProfilesStream, IsReadFromTheKeysOfItsChannel) {
  describe(channel());
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(info.stream_type, 3);
  EXPECT_EQ(info.slot_switch, 1);
  EXPECT_EQ(videoText(info), "node 5 profile 2 codec 0 enable 1 sps 1 1920x1080@15 fetype 7");
  EXPECT_EQ(audioText(info), "node 3 profile 2 codec 1 enable 6 48000 Hz 2 ch 96000 bit/s volume 80");
  EXPECT_EQ(pictureText(info), "osd 0 flip 1 mirror 2 ldsp 3");
  EXPECT_STREQ(info.vtag, "12345678");
}

TEST_F(AProfilesStream, OfAnAttachedChannelWithNothingElseHasTheDefaults) {
  channel().exists(1).profile(2);
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(info.slot_switch, 1);
  EXPECT_EQ(videoText(info), "node -1 profile 2 codec 1 enable 0 sps 0 1280x720@30 fetype ");
  EXPECT_EQ(audioText(info), "node -1 profile 2 codec 0 enable 0 8000 Hz 1 ch 64000 bit/s volume 50");
  EXPECT_EQ(pictureText(info), kPresetPicture);
}

TEST_F(AProfilesStream, DoesNotChangeHeaderChannelAndReservedWords) {
  describe(channel());
  read();
  const _streaminfo before = untouched<_streaminfo>();
  EXPECT_EQ(memcmp(info.header, before.header, sizeof info.header), 0);
  EXPECT_EQ(info.channel, before.channel);
  EXPECT_EQ(info.reserved1, before.reserved1);
  EXPECT_EQ(memcmp(info.reserved2, before.reserved2, sizeof info.reserved2), 0);
}

TEST_F(AProfilesStream, IsReadInOnePassAfterTheMapping) {
  describe(channel());
  read();
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "open r", "close"));
}

TEST_F(AProfilesStream, OfNoChannelIsSwitchedOn) {
  read();
  EXPECT_EQ(info.slot_switch, 1);
}

TEST_F(AProfilesStream, OfAnAbsentDeviceIsRefusedFirst) {
  describe(channel()).exists(0).conflict(2).slotSwitch(0);
  EXPECT_EQ(read(), -2);
  EXPECT_EQ(info.slot_switch, 0);
  expectPresets();
}

TEST_F(AProfilesStream, OfADisplacedDeviceIsThere) {
  describe(channel()).exists(-1);
  EXPECT_EQ(read(), 0);
}

TEST_F(AProfilesStream, OfAWaitingDeviceIsRefusedSecond) {
  describe(channel()).conflict(2).slotSwitch(0);
  EXPECT_EQ(read(), -3);
  EXPECT_EQ(info.slot_switch, 0);
  expectPresets();
}

TEST_F(AProfilesStream, OfAPortThatIsSwitchedOffIsRefusedThird) {
  describe(channel()).slotSwitch(0);
  EXPECT_EQ(read(), -4);
  EXPECT_EQ(info.slot_switch, 0);
  expectPresets();
}

TEST_F(AProfilesStream, IsOfTheTypeOfItsNodes) {
  describeVideoOnly(channel());
  read();
  EXPECT_EQ(info.stream_type, 2);
  describeAudioOnly(channel());
  read();
  EXPECT_EQ(info.stream_type, 1);
  channel().vnode(-1).anode(-1);
  read();
  EXPECT_EQ(info.stream_type, 0);
}

TEST_F(AProfilesStream, DoesNotCountAudioThatIsSwitchedOff) {
  describe(channel()).set("audio/aenable", 0);
  read();
  EXPECT_EQ(info.stream_type, 2);
  describeAudioOnly(channel()).set("audio/aenable", 0);
  read();
  EXPECT_EQ(info.stream_type, 0);
}

TEST_F(AProfilesStream, WithALongTagOrTypeHasThemCutTo15Characters) {
  describe(channel()).set("vtag", std::string(40, 't')).set("video/fetype", std::string(16, 'f'));
  read();
  EXPECT_EQ(info.vtag, std::string(15, 't'));
  EXPECT_EQ(info.fetype, std::string(15, 'f'));
  EXPECT_EQ(info.anode, 3);
}

TEST_F(AProfilesStream, IsRefusedWithoutARecord) {
  EXPECT_EQ(vl_get_stream_info(2, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class AProfilesSettings : public AProfilesRecord<_profile_info> {};

TEST_F(AProfilesSettings, NameItsDevice) {
  describe(channel());
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(info.exists, 1);
  EXPECT_EQ(info.stream_type, 3);
  EXPECT_STREQ(info.profilename, "Front door");
  EXPECT_STREQ(info.usbslot, "3-1.2");
  EXPECT_STREQ(info.devname, "HD Webcam");
}

TEST_F(AProfilesSettings, AreReadButForTheFieldsThatKeepTheirPresets) {
  describe(channel());
  read();
  EXPECT_EQ(videoText(info), "node 5 profile -1 codec 0 enable 0 sps 0 1920x1080@15 fetype 7");
  EXPECT_EQ(audioText(info), "node -1 profile -1 codec 1 enable 6 48000 Hz 1 ch 96000 bit/s volume 80");
  EXPECT_EQ(pictureText(info), "osd 0 flip 1 mirror 2 ldsp 3");
  EXPECT_STREQ(info.acap, "1");
}

TEST_F(AProfilesSettings, OfAnEmptyChannelAreTheDefaultsWithAudioOn) {
  channel().profile(2);
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(info.exists, 0);
  EXPECT_EQ(videoText(info), kPresetVideo);
  EXPECT_EQ(audioText(info), "node -1 profile -1 codec 0 enable 1 8000 Hz 1 ch 64000 bit/s volume 50");
  EXPECT_EQ(pictureText(info), kPresetPicture);
}

TEST_F(AProfilesSettings, AreReadWhateverStateTheDeviceIsIn) {
  describe(channel()).exists(0).conflict(2).slotSwitch(0);
  EXPECT_EQ(read(), 0);
  EXPECT_EQ(info.exists, 0);
  EXPECT_EQ(info.vnode, 5);
}

TEST_F(AProfilesSettings, HaveTheTypeOfTheNodesWithAudioOnOrOff) {
  describeAudioOnly(channel()).set("audio/aenable", 0);
  read();
  EXPECT_EQ(info.stream_type, 1);
  describeVideoOnly(channel());
  read();
  EXPECT_EQ(info.stream_type, 2);
}

TEST_F(AProfilesSettings, HaveClearedReservedWords) {
  describe(channel());
  read();
  EXPECT_EQ(info.reserved1, 0);
  EXPECT_THAT(info.reserved2, ElementsAre(0, 0, 0));
}

TEST_F(AProfilesSettings, WithTextsThatFillTheirFieldsEndThem) {
  describe(channel()).profileName(std::string(300, 'p')).slot(std::string(128, 's')).name(std::string(256, 'd'));
  read();
  EXPECT_EQ(info.profilename, std::string(255, 'p'));
  EXPECT_EQ(info.usbslot, std::string(127, 's'));
  EXPECT_EQ(info.devname, std::string(255, 'd'));
}

TEST_F(AProfilesSettings, AreRefusedWithoutARecord) {
  EXPECT_EQ(vl_get_profile_info(2, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class ARate : public AProfilesSettings {};

TEST_F(ARate, ThatIsStoredIsReadAsANumber) {
  channel().profile(2).set("video/framerate", "7.50");
  read();
  EXPECT_EQ(info.framerate, 7.5F);
}

TEST_F(ARate, ThatIsMissingIsThirty) {
  channel().profile(2);
  read();
  EXPECT_EQ(info.framerate, 30.0F);
}

TEST_F(ARate, ThatIsNotANumberIsZero) {
  channel().profile(2).set("video/framerate", "fast");
  read();
  EXPECT_EQ(info.framerate, 0.0F);
}

class AChannelsProfile : public ContractTest {};

TEST_F(AChannelsProfile, IsTheStoredOne) {
  host.channel(7).profile(3);
  EXPECT_EQ(vl_get_profileID(7), 3);
}

TEST_F(AChannelsProfile, IsNoneWhenNothingIsStored) { EXPECT_EQ(vl_get_profileID(7), -1); }

TEST_F(AChannelsProfile, IsAskedForByAnyNumber) {
  host.channel(12).profile(3);
  EXPECT_EQ(vl_get_profileID(12), 3);
  EXPECT_EQ(vl_get_profileID(-2147483647 - 1), -1);
}

TEST_F(AChannelsProfile, IsNoneWhenTheFileCannotBeOpened) {
  host.channel(7).profile(3);
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(vl_get_profileID(7), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
}

}  // namespace
}  // namespace contract
