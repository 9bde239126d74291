// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a change of a profile's stream writes, logs and notifies.
#include <string>
#include <utility>
#include <vector>

#include "stream_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class AStreamChange : public StreamTest {
 protected:
  AStreamChange() { channel().anode(3).set("video/framerate", "20.00"); }

  void become(const _streaminfo &info) { before = after = info; }

  int store(int event_code = 1, int profile = kProfile) {
    OutputCapture output;
    const int result = vl_set_usbchn_stream(profile, &after, &before, event_code);
    message = output.text();
    return result;
  }

  Datagram notification() const {
    EXPECT_THAT(host.network.datagrams(), SizeIs(1));
    return host.network.datagrams().at(0);
  }

  void expectNothingDone() const {
    EXPECT_THAT(host.config.writes(), IsEmpty());
    EXPECT_THAT(logged(), IsEmpty());
    EXPECT_THAT(host.network.datagrams(), IsEmpty());
  }

  _streaminfo before = stream(kMjpeg);
  _streaminfo after = stream(kMjpeg);
  std::string message;
};

TEST_F(AStreamChange, ThatChangesNothingWritesThatVideoIsOn) {
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
  EXPECT_THAT(logged(), IsEmpty());
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AStreamChange, ThatChangesNothingOfH264ResetsItsStateToo) {
  become(stream(kH264));
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/spsstate=0"));
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AStreamChange, ThatChangesNothingIsReportedWhenAskedTo) {
  EXPECT_EQ(store(kReportAll), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
  EXPECT_THAT(logged(), SizeIs(6));
  EXPECT_EQ(notification().word(48), kReportAll);
}

TEST_F(AStreamChange, OfTheSizeOfMjpegWritesItAndANewTag) {
  before.width = 1280;
  before.height = 720;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/width=640", "ch4/video/height=480",
                                                MatchesRegex("ch4/vtag=[0-9]{8}")));
}

TEST_F(AStreamChange, OfOneSideOfThePictureWritesThatSide) {
  become(stream(kH264));
  before.width = 1280;
  store();
  before = after;
  before.height = 720;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/width=640", "ch4/video/spsstate=0",
                                                "ch4/video/venable=1", "ch4/video/height=480", "ch4/video/spsstate=0"));
}

TEST_F(AStreamChange, ContinuesWhenAKeyCannotBeWritten) {
  before.width = 1280;
  before.height = 720;
  host.config.refuseWritesOf("ch4/video/width");
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch4/video/venable=1", "ch4/video/height=480", MatchesRegex("ch4/vtag=[0-9]{8}")));
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

TEST_F(AStreamChange, OfTheRateOfMjpegWritesItAndANewTag) {
  after.framerate = 10;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch4/video/venable=1", "ch4/video/framerate=5.00", MatchesRegex("ch4/vtag=[0-9]{8}")));
}

TEST_F(AStreamChange, ToARateThatIsRoundedToTheOldOneChangesNothing) {
  after.framerate = 100;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
}

TEST_F(AStreamChange, FromH264ToMjpegMakesANewTag) {
  before.vcodec = kH264;
  store();
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch4/video/venable=1", "ch4/video/vcodec=1", MatchesRegex("ch4/vtag=[0-9]{8}")));
  EXPECT_EQ(notification().word(44), 0);
}

TEST_F(AStreamChange, FromMjpegToH264MakesNoTag) {
  become(stream(kH264));
  before.vcodec = kMjpeg;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/vcodec=0", "ch4/video/spsstate=0"));
  EXPECT_EQ(notification().word(44), 1);
}

TEST_F(AStreamChange, OfMjpegsSoundMakesNoTag) {
  after.volume = 70;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/audio/volume=70"));
}

TEST_F(AStreamChange, OfThePictureOfH264WritesWhatChanged) {
  become(stream(kH264));
  after.osdenable = 1;
  after.flip = 2;
  after.mirror = 3;
  after.ldspoutput = 4;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/spsstate=0", "ch4/video/osdenable=1",
                                                "ch4/video/flip=2", "ch4/video/mirror=3", "ch4/video/ldspoutput=4"));
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

TEST_F(AStreamChange, OfThePictureOfMjpegWritesNothingOfIt) {
  after.osdenable = after.flip = after.mirror = after.ldspoutput = 1;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

class EachSettingAlone : public AStreamChange, public testing::WithParamInterface<int _streaminfo::*> {};

TEST_P(EachSettingAlone, IsNotified) {
  become(stream(kH264));
  (before.*GetParam()) += 1;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(OfThoseThatCount, EachSettingAlone,
                         testing::Values(&_streaminfo::vcodec, &_streaminfo::width, &_streaminfo::height,
                                         &_streaminfo::osdenable, &_streaminfo::flip, &_streaminfo::mirror,
                                         &_streaminfo::ldspoutput, &_streaminfo::aenable, &_streaminfo::acodec,
                                         &_streaminfo::volume));

class EachOtherSettingAlone : public EachSettingAlone {};

TEST_P(EachOtherSettingAlone, IsNoChange) {
  become(stream(kH264));
  (before.*GetParam()) += 1;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/video/spsstate=0"));
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(OfTheRest, EachOtherSettingAlone,
                         testing::Values(&_streaminfo::channel, &_streaminfo::stream_type, &_streaminfo::slot_switch,
                                         &_streaminfo::vnode, &_streaminfo::vprofile, &_streaminfo::venable,
                                         &_streaminfo::spsstate, &_streaminfo::anode, &_streaminfo::aprofile,
                                         &_streaminfo::samplerate, &_streaminfo::channelno, &_streaminfo::bitrate));

TEST_F(AStreamChange, OfTheAudioFormatWritesItsPartsWithIt) {
  after.acodec = 1;
  after.samplerate = 48000;
  after.channelno = 2;
  after.bitrate = 96000;
  store();
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch4/video/venable=1", "ch4/audio/acodec=1", "ch4/audio/samplerate=48000",
                          "ch4/audio/channelno=2", "ch4/audio/bitrate=96000"));
}

TEST_F(AStreamChange, OfSoundThatIsOffWritesOnlyThatItIsOff) {
  after.aenable = 0;
  after.acodec = 1;
  after.volume = 70;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/audio/aenable=0"));
  become(after);
  after.volume = 71;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

TEST_F(AStreamChange, OfSoundThatIsSwitchedOnWritesItsSettings) {
  before.aenable = 0;
  after.volume = 70;
  store();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1", "ch4/audio/aenable=1", "ch4/audio/volume=70"));
}

TEST_F(AStreamChange, WritesTheListedRateThatTheRequestIsRoundedTo) {
  host.camera(5, "3-1.2")
      .listing(
          Listing().format("MJPG").size(640, 480).rate("30.000").rate("25.000").rate("20.000").rate("15.000").text());
  after.framerate = 28;
  store();
  EXPECT_EQ(channel().get("video/framerate"), "25.00");
  EXPECT_THAT(logged(), ElementsAre("log 0 Modified Channel 3 FPS: 25.00"));
  EXPECT_EQ(after.framerate, 28.0F);
}

TEST_F(AStreamChange, WritesRatesWithTwoDigits) {
  become(stream(kH264));
  after.framerate = 8;
  store();
  EXPECT_EQ(channel().get("video/framerate"), "7.50");
}

TEST_F(AStreamChange, ToARateOfZeroKeepsTheStoredOne) {
  after.framerate = 0;
  before.framerate = 20;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
}

TEST_F(AStreamChange, ToARateOfZeroWritesTheStoredOneWhereTheCallerHadAnother) {
  after.framerate = 0;
  store();
  EXPECT_EQ(channel().get("video/framerate"), "20.00");
  EXPECT_THAT(logged(), ElementsAre("log 0 Modified Channel 3 FPS: 20.00"));
}

TEST_F(AStreamChange, ToARateOfZeroMeansThirtyWhereNoneIsStored) {
  host.config.erase("ch4/video/framerate");
  after.framerate = 0;
  store();
  EXPECT_EQ(channel().get("video/framerate"), "30.00");
}

TEST_F(AStreamChange, CutsARateTextAt15Characters) {
  channel().set("video/framerate", "99999999999999.9");
  after.framerate = 0;
  store();
  EXPECT_EQ(channel().get("video/framerate").size(), 15U);
}

TEST_F(AStreamChange, TakesTheStreamsTypeFromTheChannel) {
  after.stream_type = 0;
  store();
  EXPECT_EQ(after.stream_type, 3);
  channel().anode(-1);
  store();
  EXPECT_EQ(after.stream_type, 2);
}

// Another writer takes the devices away, and gives the camera back before it is asked.
TEST_F(AStreamChange, OfAChannelThatIsSeenWithoutDevicesKeepsTheCallersType) {
  channel().vnode(-1).anode(-1);
  host.config.beforeOpenNumber(3, [this] { channel().vnode(5); });
  after.stream_type = 1;
  after.volume = 70;
  EXPECT_EQ(store(), 0);
  EXPECT_EQ(after.stream_type, 1);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/audio/volume=70"));
  EXPECT_EQ(notification().word(36), -1);
  EXPECT_EQ(notification().word(40), -1);
}

TEST_F(AStreamChange, ThatIsRefusedDoesNotChangeTheCallersRecords) {
  after.stream_type = 0;
  after.width = 800;
  const _streaminfo given = after;
  const _streaminfo stood = before;
  store();
  EXPECT_TRUE(isSameRecord(after, given));
  EXPECT_TRUE(isSameRecord(before, stood));
}

TEST_F(AStreamChange, OfVideoOnlyWritesNoSound) {
  channel().anode(-1);
  after.aenable = 0;
  EXPECT_EQ(store(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/video/venable=1"));
  EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(AStreamChange, LogsInsideTheFifthOpenAndNotifiesAfterIt) {
  after.volume = 70;
  store();
  EXPECT_THAT(host.journal.only({"open", "close", "log", "notify"}),
              ElementsAre("open r", "close", "open r", "close", "open r", "close", "open r", "close", "open w",
                          "log 0 Modified Channel 3 audio volume: 70", "close",
                          "notify event=1 profile=2 video=5 audio=3 flag=0 target=2"));
}

TEST_F(AStreamChange, IsLoggedLineByLineBeforeItsFirstKeyIsWritten) {
  become(stream(kH264));
  before.vcodec = kMjpeg;
  after.volume = 70;
  int lines = 0;
  host.journal.watch([&](const std::string &line) {
    if (line.rfind("log", 0) != 0) return;
    ++lines;
    EXPECT_THAT(host.config.writes(), IsEmpty()) << line;
  });
  store();
  EXPECT_EQ(lines, 2);
}

TEST_F(AStreamChange, IsNotifiedWithItsHeaderAndNodes) {
  after.volume = 70;
  EXPECT_EQ(store(9), 0);
  const Datagram sent = notification();
  EXPECT_EQ(sent.bytes.substr(0, 32), "ORDA_VLM2_CFCG_Nabcdefghijklmnop");
  EXPECT_EQ(sent.word(32), kProfile);
  EXPECT_EQ(sent.word(36), 5);
  EXPECT_EQ(sent.word(40), 3);
  EXPECT_EQ(sent.word(44), 0);
  EXPECT_EQ(sent.word(48), 9);
  EXPECT_EQ(sent.word(52), kProfile);
}

TEST_F(AStreamChange, ThatCannotBeNotifiedFails) {
  host.network.failSends();
  after.volume = 70;
  EXPECT_EQ(store(), -1);
  EXPECT_EQ(channel().get("audio/volume"), "70");
}

TEST_F(AStreamChange, ToASizeThatIsNotListedDoesNothing) {
  after.width = 800;
  EXPECT_EQ(store(kReportAll), -1);
  expectNothingDone();
}

TEST_F(AStreamChange, ToACodecThatIsNotListedDoesNothing) {
  host.camera(5, "3-1.2").listing(Listing().format("MJPG").size(640, 480).rate("60.000").text());
  after.vcodec = kH264;
  EXPECT_EQ(store(kReportAll), -1);
  expectNothingDone();
}

TEST_F(AStreamChange, OfAnAudioOnlyChannelDoesNothing) {
  channel().vnode(-1);
  EXPECT_EQ(store(kReportAll), -1);
  expectNothingDone();
}

TEST_F(AStreamChange, OfAProfileWithoutAChannelDoesNothing) {
  EXPECT_EQ(store(kReportAll, 1), -1);
  expectNothingDone();
  EXPECT_EQ(message, "");
}

TEST_F(AStreamChange, ThatCannotReadDoesNothing) {
  for (const int open : {1, 2, 3, 4}) {
    host.config.failOpenNumber(open, -3);
    EXPECT_EQ(store(kReportAll), -1);
    EXPECT_EQ(message, openFailure(-3)) << "open " << open;
  }
  expectNothingDone();
}

TEST_F(AStreamChange, ThatCannotWriteDoesNothing) {
  host.config.failWriteOpens(-3);
  EXPECT_EQ(store(kReportAll), -1);
  EXPECT_EQ(message, openFailure(-3));
  expectNothingDone();
}

TEST_F(AStreamChange, IsRefusedForAnUnknownProfileOrWithoutItsRecords) {
  EXPECT_EQ(store(kReportAll, 4), -1);
  EXPECT_EQ(store(kReportAll, -1), -1);
  EXPECT_EQ(vl_set_usbchn_stream(kProfile, nullptr, &before, 1), -1);
  EXPECT_EQ(vl_set_usbchn_stream(kProfile, &after, nullptr, 1), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
