// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which devices are free and which serve a profile.
#include <array>
#include <cstring>
#include <string>

#include "contract_test.h"
#include "described_channel.h"
#include "record_text.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Availability : public ContractTest {
 protected:
  using Rows = std::array<_availinfo, USBDEV_CHANNELS + 1>;

  Availability() {
    rows.fill(untouched<_availinfo>());
    rows[USBDEV_CHANNELS] = afterTheRows();
  }

  int readFree() {
    OutputCapture output;
    const int result = vl_get_available_dev(rows.data());
    message = output.text();
    expectNothingBehind();
    return result;
  }

  int readServing(int profile) {
    OutputCapture output;
    const int result = vl_get_available_dev_N_channel(rows.data(), profile);
    message = output.text();
    expectNothingBehind();
    return result;
  }

  bool isZero(size_t i) const { return isSameRecord(rows.at(i), zeroed<_availinfo>()); }
  bool isNotAvailable(size_t i) const {
    _availinfo expected = zeroed<_availinfo>();
    expected.stream_type = -1;
    return isSameRecord(rows.at(i), expected);
  }
  bool isUntouched() const { return isSameRecord(rows[0], untouched<_availinfo>()); }

  Rows rows{};
  std::string message;

 private:
  // What follows the ten rows looks like one with video only, whose audio would be switched off.
  static _availinfo afterTheRows() {
    _availinfo row = untouched<_availinfo>();
    row.stream_type = 2;
    return row;
  }
  void expectNothingBehind() const { EXPECT_TRUE(isSameRecord(rows[USBDEV_CHANNELS], afterTheRows())); }
};

class AFreeDevice : public Availability {
 protected:
  HostChannel channel() { return host.channel(9); }
  const _availinfo &row() const { return rows[9]; }
};

TEST_F(AFreeDevice, IsDescribedByItsKeysAndNothingElse) {
  describe(channel()).profile(-1);
  EXPECT_EQ(readFree(), 0);
  _availinfo expected = zeroed<_availinfo>();
  expected.stream_type = 3;
  strcpy(expected.usbslot, "3-1.2");
  strcpy(expected.devname, "HD Webcam");
  expected.vnode = 5;
  expected.vcodec = 0;
  expected.width = 1920;
  expected.height = 1080;
  expected.framerate = 15;
  strcpy(expected.fetype, "7");
  expected.acodec = 1;
  expected.aenable = 6;
  expected.volume = 80;
  expected.osdenable = 0;
  expected.flip = 1;
  expected.mirror = 2;
  expected.ldspoutput = 3;
  strcpy(expected.acap, "1");
  EXPECT_TRUE(isSameRecord(row(), expected));
}

TEST_F(AFreeDevice, WithNothingStoredHasTheDefaults) {
  channel().vnode(1).anode(1);
  readFree();
  EXPECT_EQ(row().vcodec, 1);
  EXPECT_EQ(row().width, 1280);
  EXPECT_EQ(row().height, 720);
  EXPECT_EQ(row().framerate, 30.0F);
  EXPECT_EQ(row().acodec, 0);
  EXPECT_EQ(row().aenable, 1);
  EXPECT_EQ(row().volume, 50);
  EXPECT_EQ(pictureText(row()), "osd 1 flip 0 mirror 0 ldsp 0");
}

TEST_F(AFreeDevice, NeedNotBeAttached) {
  channel().exists(0).slot("3-1");
  readFree();
  EXPECT_STREQ(row().usbslot, "3-1");
  EXPECT_EQ(row().vnode, -1);
  EXPECT_EQ(row().stream_type, 0);
  EXPECT_EQ(row().framerate, 30.0F);
  EXPECT_EQ(row().aenable, 1);
}

TEST_F(AFreeDevice, WithAudioOnlyHasNoRate) {
  describeAudioOnly(channel()).profile(-1);
  readFree();
  EXPECT_EQ(row().stream_type, 1);
  EXPECT_EQ(row().framerate, 0.0F);
  EXPECT_EQ(row().aenable, 6);
}

TEST_F(AFreeDevice, WithVideoOnlyHasNoAudio) {
  describeVideoOnly(channel()).profile(-1);
  readFree();
  EXPECT_EQ(row().stream_type, 2);
  EXPECT_EQ(row().framerate, 15.0F);
  EXPECT_EQ(row().aenable, 0);
}

TEST_F(AFreeDevice, WithVideoOnlyHasNoAudioOnChannel0Either) {
  describeVideoOnly(host.channel(0)).profile(-1);
  readFree();
  EXPECT_EQ(rows[0].aenable, 0);
}

TEST_F(AFreeDevice, HasNoProfile) {
  describe(channel()).profile(0);
  readFree();
  EXPECT_TRUE(isZero(9));
}

TEST_F(AFreeDevice, DoesNotWait) {
  for (const int mark : {0, 9, 999}) {
    describe(channel()).profile(-1).conflict(mark);
    readFree();
    EXPECT_TRUE(isZero(9)) << mark;
  }
}

TEST_F(AFreeDevice, WithTextsThatFillTheirFieldsHasThemEnded) {
  channel().slot(std::string(128, 's')).name(std::string(256, 'd')).set("audio/acap", std::string(16, 'a'));
  readFree();
  EXPECT_EQ(row().usbslot, std::string(127, 's'));
  EXPECT_EQ(row().devname, std::string(255, 'd'));
  EXPECT_EQ(row().acap, std::string(15, 'a'));
}

TEST_F(AFreeDevice, IsReadInOnePassWithoutCommands) {
  describe(channel()).profile(-1);
  readFree();
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AFreeDevice, IsNotReportedWhenTheFileCannotBeOpened) {
  describe(channel()).profile(-1);
  host.config.failReadOpens(0);
  EXPECT_EQ(readFree(), -1);
  EXPECT_EQ(message, openFailure(0));
  EXPECT_TRUE(isUntouched());
}

TEST_F(AFreeDevice, IsRefusedWithoutRows) {
  EXPECT_EQ(vl_get_available_dev(nullptr), -1);
  EXPECT_EQ(vl_get_available_dev_N_channel(nullptr, 0), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class AServingDevice : public Availability {
 protected:
  HostChannel channel() { return host.channel(0); }
  const _availinfo &row() const { return rows[0]; }
};

TEST_F(AServingDevice, IsDescribedLikeAFreeOne) {
  describe(channel());
  EXPECT_EQ(readServing(2), 0);
  const _availinfo serving = row();
  channel().profile(-1);
  readFree();
  EXPECT_TRUE(isSameRecord(serving, row()));
}

TEST_F(AServingDevice, IsTheOnlyOneThatIsAvailable) {
  describe(channel());
  readServing(2);
  EXPECT_EQ(row().stream_type, 3);
  for (size_t i = 1; i < USBDEV_CHANNELS; ++i) EXPECT_TRUE(isNotAvailable(i)) << i;
}

TEST_F(AServingDevice, ThatWaitsIsNotAvailable) {
  describe(channel()).conflict(3);
  readServing(2);
  EXPECT_TRUE(isNotAvailable(0));
}

TEST_F(AServingDevice, WithAudioOnlyHasNoRate) {
  describeAudioOnly(channel());
  readServing(2);
  EXPECT_EQ(row().framerate, 0.0F);
}

TEST_F(AServingDevice, WithVideoOnlyKeepsItsAudioSetting) {
  describeVideoOnly(channel());
  readServing(2);
  EXPECT_EQ(row().stream_type, 2);
  EXPECT_EQ(row().aenable, 6);
}

TEST_F(AServingDevice, OfNoProfileIsAFreeOneThatKeepsItsAudioSetting) {
  describeVideoOnly(channel()).profile(-1);
  describe(host.channel(1));
  describe(host.channel(2)).profile(-1).conflict(0);
  EXPECT_EQ(readServing(-1), 0);
  EXPECT_EQ(row().stream_type, 2);
  EXPECT_EQ(row().aenable, 6);
  EXPECT_TRUE(isNotAvailable(1));
  EXPECT_TRUE(isNotAvailable(2));
}

TEST_F(AServingDevice, OfAnUnknownProfileIsRefusedBeforeAnythingIsOpened) {
  for (const int profile : {-2, 4}) {
    host.channel(1).profile(profile);
    EXPECT_EQ(readServing(profile), -1);
  }
  EXPECT_TRUE(isUntouched());
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AServingDevice, IsNotReportedWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-1);
  EXPECT_EQ(readServing(2), -1);
  EXPECT_EQ(message, openFailure(-1));
  EXPECT_TRUE(isUntouched());
}

}  // namespace
}  // namespace contract
