// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_settings.h"

#include <gmock/gmock.h>

#include "json_of.h"
#include "stream/stream_outcome.h"
#include "text_fields.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using usbdevctl::changed;
using usbdevctl::checkSize;
using usbdevctl::notStored;
using usbdevctl::outcomeFields;
using usbdevctl::StreamChange;
using usbdevctl::streamFields;
using usbdevctl::StreamOutcome;
using usbdevctl::streamSettings;

/// A change of one setting.
StreamChange changeOf(const std::string &option, const std::string &value) {
  StreamChange change;
  for (std::size_t i = 0; i < streamSettings().size(); ++i) {
    if (option == streamSettings()[i].option) change.settings[i] = value;
  }
  return change;
}

_streaminfo someRecord() {
  _streaminfo record = {};
  record.stream_type = 3;
  record.vnode = 4;
  record.anode = -1;
  record.vcodec = 1;
  record.venable = 1;
  record.spsstate = 2;
  record.width = 640;
  record.height = 480;
  record.framerate = 7.5F;
  record.acodec = 1;
  record.aenable = 1;
  record.samplerate = 48000;
  record.channelno = 2;
  record.bitrate = 96000;
  record.volume = 70;
  record.osdenable = 1;
  record.mirror = 1;
  setField(record.fetype, "fe1");
  setField(record.vtag, "12345678");
  return record;
}

TEST(AStreamRecord, IsShownWithAllItsSettings) {
  EXPECT_EQ(jsonOf(streamFields(someRecord())),
            R"({"schema":1,"stream":"both","video_node":4,"width":640,"height":480,"fps":7.5,"codec":"mjpeg",)"
            R"("overlay":true,"flip":false,"mirror":true,"display":false,"front_end":"fe1","video_enabled":true,)"
            R"("sps_state":2,"tag":"12345678","audio_node":null,"audio":true,"audio_codec":"aac","volume":70,)"
            R"("sample_rate":48000,"audio_channels":2,"bit_rate":96000})"
            "\n");
}

TEST(AStreamRecord, HasItsSizeInOneLineForPeople) {
  EXPECT_THAT(streamFields(someRecord()).text(false), HasSubstr("size            640x480\nfps             7.5\n"));
}

struct Change {
  const char *option;
  const char *value;
  int _streaminfo::*field;
  int number;
};

void PrintTo(const Change &change, std::ostream *out) { *out << change.option << '=' << change.value; }

class AChangeOf : public testing::TestWithParam<Change> {};

TEST_P(AChangeOf, ASettingReachesItsField) {
  const Change &change = GetParam();
  _streaminfo record = {};
  record.*change.field = 1 - change.number;
  EXPECT_EQ(changed(record, changeOf(change.option, change.value)).*change.field, change.number);
}

INSTANTIATE_TEST_SUITE_P(Options, AChangeOf,
                         testing::Values(Change{"--codec", "h264", &_streaminfo::vcodec, 0},
                                         Change{"--codec", "mjpeg", &_streaminfo::vcodec, 1},
                                         Change{"--overlay", "on", &_streaminfo::osdenable, 1},
                                         Change{"--flip", "on", &_streaminfo::flip, 1},
                                         Change{"--mirror", "off", &_streaminfo::mirror, 0},
                                         Change{"--display", "on", &_streaminfo::ldspoutput, 1},
                                         Change{"--audio", "on", &_streaminfo::aenable, 1},
                                         Change{"--audio-codec", "ulaw", &_streaminfo::acodec, 0},
                                         Change{"--audio-codec", "aac", &_streaminfo::acodec, 1},
                                         Change{"--volume", "33", &_streaminfo::volume, 33}));

TEST(AChange, DoesNotChangeWhatIsNotGiven) {
  const _streaminfo record = someRecord();
  const _streaminfo same = changed(record, StreamChange());
  EXPECT_EQ(jsonOf(streamFields(same)), jsonOf(streamFields(record)));
}

TEST(AChange, OfSizeAndRateReachesTheRecord) {
  StreamChange change;
  change.size = "1920x1080";
  change.rate = 15.0F;
  const _streaminfo record = changed(someRecord(), change);
  EXPECT_EQ(record.width, 1920);
  EXPECT_EQ(record.height, 1080);
  EXPECT_EQ(record.framerate, 15.0F);
}

TEST(ASize, IsTwoNumbersThatAreNotZero) {
  EXPECT_EQ(checkSize("1280x720"), "");
  for (const char *wrong : {"", "1280", "1280x", "x720", "0x720", "1280x-720", "1280x720p", "1280x7201234"}) {
    EXPECT_NE(checkSize(wrong), "") << wrong;
  }
}

TEST(AStoredChange, LeavesNothingOut) {
  StreamChange change = changeOf("--volume", "70");
  change.size = "640x480";
  change.rate = 29.0F;  // the camera chooses another one
  EXPECT_THAT(notStored(someRecord(), change), IsEmpty());
}

TEST(AChangeThatDoesNotFitTheStream, IsNamed) {
  StreamChange change = changeOf("--audio-codec", "ulaw");
  change.size = "640x400";
  EXPECT_THAT(notStored(someRecord(), change), ElementsAre("audio_codec", "size"));
}

TEST(TheOutcomeOfAChange, ShowsTheRateAndWhatWasLogged) {
  StreamOutcome outcome;
  outcome.stored = someRecord();
  outcome.events = {{7, 0, 0, "Modified Channel 1 FPS: 7.50"}, {8, 0, 1, "beware\033"}};
  StreamChange change;
  change.rate = 9.0F;
  EXPECT_EQ(outcomeFields(outcome, change).text(false),
            "fps         7.5 (9 was asked for)\n"
            "logged      Modified Channel 1 FPS: 7.50\n"
            "logged      beware\\x1b\n");
}

TEST(TheOutcomeOfAChange, IsOneObjectForPrograms) {
  StreamOutcome outcome;
  outcome.stored = someRecord();
  outcome.events = {{8, 0, 1, "beware"}};
  EXPECT_EQ(jsonOf(outcomeFields(outcome, changeOf("--flip", "on"))),
            R"({"schema":1,"fps":7.5,"asked_fps":null,)"
            R"("events":[{"id":8,"time":"1970-01-01T00:00:00Z","level":"warning","text":"beware"}],)"
            R"("not_stored":["flip"]})"
            "\n");
}

TEST(TheOutcomeOfAChange, ShowsWhenNothingWasLogged) {
  EXPECT_EQ(outcomeFields({}, {}).text(false), "fps         0\nlogged      none\n");
}

TEST(ARate, IsAPlainNumberThatIsNotNegative) {
  for (const char *rate : {"0", "30", "7.5", "29.97", ".5", "60."}) EXPECT_EQ(usbdevctl::checkRate(rate), "") << rate;
  const std::string too_large = "1" + std::string(39, '0');
  for (const std::string &rate :
       std::vector<std::string>{"", ".", "-5", "+5", "nan", "inf", "1e3", "0x1f", "1.2.3", "5 ", too_large}) {
    EXPECT_EQ(usbdevctl::checkRate(rate), rate + " is not a number of frames per second such as 30 or 7.5");
  }
}

}  // namespace
