// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What users read in the event log about a changed stream.
#include <string>

#include "stream_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AStreamsLog : public StreamTest {
 protected:
  void become(const _streaminfo &info) { before = after = info; }

  Lines log(int event_code = 1, int profile = kProfile) { return log(before.framerate, event_code, profile); }
  Lines log(float chosen_fps, int event_code = 1, int profile = kProfile) {
    host.journal.clear();
    Add_setStream_log(profile, &after, &before, chosen_fps, event_code);
    return host.journal.lines();
  }

  _streaminfo before = stream(kMjpeg);
  _streaminfo after = stream(kMjpeg);
};

TEST_F(AStreamsLog, HasNothingAboutWhatDidNotChange) { EXPECT_THAT(log(), IsEmpty()); }

TEST_F(AStreamsLog, NamesTheChannelByItsProfileFromOne) {
  after.volume = 51;
  EXPECT_THAT(log(1, 0), ElementsAre("log 0 Modified Channel 1 audio volume: 51"));
  EXPECT_THAT(log(1, 3), ElementsAre("log 0 Modified Channel 4 audio volume: 51"));
}

TEST_F(AStreamsLog, NamesTheVideoFormat) {
  before.vcodec = kH264;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 video format: MJPEG"));
  before.vcodec = kMjpeg;
  after.vcodec = kH264;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 video format: H.264"));
  after.vcodec = 2;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 video format: H.264"));
}

TEST_F(AStreamsLog, NamesTheSizeWhenEitherSideChanges) {
  after.width = 800;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 resolution: 800x480"));
  after.width = 640;
  after.height = 360;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 resolution: 640x360"));
}

TEST_F(AStreamsLog, NamesTheChosenRateNotTheRequestedOne) {
  after.framerate = 29;
  EXPECT_THAT(log(), IsEmpty());
  EXPECT_THAT(log(7.5F), ElementsAre("log 0 Modified Channel 3 FPS: 7.50"));
}

TEST_F(AStreamsLog, WarnsOfAChangeToMoreThan60) {
  before.framerate = 30;
  EXPECT_THAT(log(60.0F), ElementsAre("log 0 Modified Channel 3 FPS: 60.00"));
  EXPECT_THAT(log(60.01F), ElementsAre("log 0 Modified Channel 3 FPS: 60.01",
                                       "log 1 Modified Channel 3 frame rate to over 60 FPS. Decode error may occur."));
}

TEST_F(AStreamsLog, DoesNotWarnOfAHighRateThatStays) {
  before.framerate = 120;
  EXPECT_THAT(log(120.0F), IsEmpty());
}

TEST_F(AStreamsLog, HasALineForEachPictureSettingOnOrOff) {
  become(stream(kH264));
  after.osdenable = after.flip = after.mirror = 1;
  EXPECT_THAT(log(),
              ElementsAre("log 0 Enabled overlay timestamp on Channel 3", "log 0 Enabled image reverse on Channel 3",
                          "log 0 Enabled image mirror on Channel 3"));
  std::swap(before, after);
  EXPECT_THAT(log(),
              ElementsAre("log 0 Disabled overlay timestamp on Channel 3", "log 0 Disabled image reverse on Channel 3",
                          "log 0 Disabled image mirror on Channel 3"));
}

TEST_F(AStreamsLog, CallsEverythingButOneDisabled) {
  become(stream(kH264));
  before.flip = 1;
  after.flip = 2;
  EXPECT_THAT(log(), ElementsAre("log 0 Disabled image reverse on Channel 3"));
}

TEST_F(AStreamsLog, HasNothingAboutThePictureOfMjpeg) {
  after.osdenable = after.flip = after.mirror = 1;
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(AStreamsLog, HasALineForSoundOnOrOff) {
  before.aenable = 0;
  EXPECT_THAT(log(), ElementsAre("log 0 Enabled audio on Channel 3"));
  std::swap(before, after);
  EXPECT_THAT(log(), ElementsAre("log 0 Disabled audio on Channel 3"));
}

TEST_F(AStreamsLog, NamesTheAudioFormatAndVolume) {
  after.acodec = 1;
  after.volume = 70;
  EXPECT_THAT(log(),
              ElementsAre("log 0 Modified Channel 3 audio format: AAC", "log 0 Modified Channel 3 audio volume: 70"));
  std::swap(before, after);
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 audio format: G711 u-law",
                                 "log 0 Modified Channel 3 audio volume: 50"));
}

TEST_F(AStreamsLog, HasNothingAboutTheFormatOfSoundThatIsOff) {
  before.aenable = after.aenable = 0;
  after.acodec = 1;
  after.volume = 70;
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(AStreamsLog, NeverNamesWhatUsersDoNotSet) {
  become(stream(kH264));
  after.ldspoutput = after.samplerate = after.channelno = after.bitrate = after.venable = after.spsstate = 77;
  EXPECT_THAT(log(), IsEmpty());
}

TEST_F(AStreamsLog, HasEverySettingWhenAllAreReported) {
  become(stream(kH264));
  EXPECT_THAT(
      log(61.0F, kReportAll),
      ElementsAre("log 0 Modified Channel 3 video format: H.264", "log 0 Modified Channel 3 resolution: 640x480",
                  "log 0 Modified Channel 3 FPS: 61.00",
                  "log 1 Modified Channel 3 frame rate to over 60 FPS. Decode error may occur.",
                  "log 0 Disabled overlay timestamp on Channel 3", "log 0 Disabled image reverse on Channel 3",
                  "log 0 Disabled image mirror on Channel 3", "log 0 Enabled audio on Channel 3",
                  "log 0 Modified Channel 3 audio format: G711 u-law", "log 0 Modified Channel 3 audio volume: 50"));
}

TEST_F(AStreamsLog, ReportsNothingThatDoesNotApply) {
  after.aenable = before.aenable = 0;
  EXPECT_THAT(log(kReportAll), ElementsAre("log 0 Modified Channel 3 video format: MJPEG",
                                           "log 0 Modified Channel 3 resolution: 640x480",
                                           "log 0 Modified Channel 3 FPS: 60.00", "log 0 Disabled audio on Channel 3"));
}

TEST_F(AStreamsLog, HasOnlySettingsOfTheStreamsType) {
  become(stream(kMjpeg));
  after.width = 800;
  after.volume = 70;
  after.stream_type = 2;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 resolution: 800x480"));
  after.stream_type = 1;
  EXPECT_THAT(log(), ElementsAre("log 0 Modified Channel 3 audio volume: 70"));
  after.stream_type = 0;
  EXPECT_THAT(log(kReportAll), IsEmpty());
}

TEST_F(AStreamsLog, HasNothingAboutAnUnknownProfileOrOfNoRecord) {
  after.volume = 70;
  EXPECT_THAT(log(1, 4), IsEmpty());
  EXPECT_THAT(log(1, -1), IsEmpty());
  Add_setStream_log(kProfile, nullptr, &before, 30, kReportAll);
  Add_setStream_log(kProfile, &after, nullptr, 30, kReportAll);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
