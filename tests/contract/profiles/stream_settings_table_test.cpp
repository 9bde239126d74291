// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A change of a profile's stream in all combinations: which devices there are, the codec, sound on or off, whether all
// is to be reported, and each setting changed or not.
#include <string>

#include "contract_test.h"
#include "encoding_host.h"
#include "record_text.h"

namespace contract {
namespace {

// What a key or a line may ask of the channel and of the new settings.
enum Condition : unsigned { kVideo = 1, kAudio = 2, kMjpeg = 4, kH264 = 8, kSoundOn = 16, kSoundOff = 32 };

// What may have changed; the last one is there always.
enum Change : unsigned {
  kCodec = 1,
  kSize = 2,
  kRate = 4,
  kOverlay = 8,
  kFlip = 16,
  kMirror = 32,
  kDisplay = 64,
  kSound = 128,
  kFormat = 256,
  kVolume = 512,
  kAllChanges = 1023,
  kAlways = 1024
};

struct Rule {
  unsigned conditions;  // all of them
  unsigned changes;     // one of them
  const char *text;
};

constexpr Rule kKeys[] = {
    {kVideo, kAlways, "ch4/video/venable=1"},
    {kVideo | kMjpeg, kCodec, "ch4/video/vcodec=1"},
    {kVideo | kH264, kCodec, "ch4/video/vcodec=0"},
    {kVideo, kSize, "ch4/video/width=640"},
    {kVideo, kSize, "ch4/video/height=480"},
    {kVideo | kMjpeg, kRate, "ch4/video/framerate=120.00"},
    {kVideo | kH264, kRate, "ch4/video/framerate=30.00"},
    {kVideo | kMjpeg, kCodec | kSize | kRate, "ch4/vtag=00004711"},
    {kVideo | kH264, kAlways, "ch4/video/spsstate=0"},
    {kVideo | kH264, kOverlay, "ch4/video/osdenable=1"},
    {kVideo | kH264, kFlip, "ch4/video/flip=1"},
    {kVideo | kH264, kMirror, "ch4/video/mirror=0"},
    {kVideo | kH264, kDisplay, "ch4/video/ldspoutput=1"},
    {kAudio | kSoundOn, kSound, "ch4/audio/aenable=1"},
    {kAudio | kSoundOff, kSound, "ch4/audio/aenable=0"},
    {kAudio | kSoundOn, kFormat, "ch4/audio/acodec=1"},
    {kAudio | kSoundOn, kFormat, "ch4/audio/samplerate=48000"},
    {kAudio | kSoundOn, kFormat, "ch4/audio/channelno=2"},
    {kAudio | kSoundOn, kFormat, "ch4/audio/bitrate=96000"},
    {kAudio | kSoundOn, kVolume, "ch4/audio/volume=70"},
};

constexpr Rule kLines[] = {
    {kVideo | kMjpeg, kCodec, "log 0 Modified Channel 3 video format: MJPEG"},
    {kVideo | kH264, kCodec, "log 0 Modified Channel 3 video format: H.264"},
    {kVideo, kSize, "log 0 Modified Channel 3 resolution: 640x480"},
    {kVideo | kMjpeg, kRate, "log 0 Modified Channel 3 FPS: 120.00"},
    {kVideo | kMjpeg, kRate, "log 1 Modified Channel 3 frame rate to over 60 FPS. Decode error may occur."},
    {kVideo | kH264, kRate, "log 0 Modified Channel 3 FPS: 30.00"},
    {kVideo | kH264, kOverlay, "log 0 Enabled overlay timestamp on Channel 3"},
    {kVideo | kH264, kFlip, "log 0 Enabled image reverse on Channel 3"},
    {kVideo | kH264, kMirror, "log 0 Disabled image mirror on Channel 3"},
    {kAudio | kSoundOn, kSound, "log 0 Enabled audio on Channel 3"},
    {kAudio | kSoundOff, kSound, "log 0 Disabled audio on Channel 3"},
    {kAudio | kSoundOn, kFormat, "log 0 Modified Channel 3 audio format: AAC"},
    {kAudio | kSoundOn, kVolume, "log 0 Modified Channel 3 audio volume: 70"},
};

struct TableCase {
  int stream_type;
  int codec;
  bool sound_on;
  bool reports_all;
  unsigned changes;

  bool hasVideo() const { return stream_type == 2 || stream_type == 3; }
  bool hasAudio() const { return stream_type == 1 || stream_type == 3; }
  unsigned conditions() const {
    return (hasVideo() ? kVideo : 0U) | (hasAudio() ? kAudio : 0U) | (codec == 1 ? kMjpeg : kH264) |
           (sound_on ? kSoundOn : kSoundOff);
  }
};

template <size_t N>
Lines textsThatApply(const Rule (&rules)[N], const TableCase &c, unsigned changes) {
  Lines texts;
  for (const Rule &rule : rules) {
    if ((rule.conditions & c.conditions()) == rule.conditions && (rule.changes & changes) != 0) {
      texts.emplace_back(rule.text);
    }
  }
  return texts;
}

struct Outcome {
  Lines writes;
  Lines lines;
  std::string notification;  // "event 5 nodes 5 3 flag 0"
};

bool operator==(const Outcome &a, const Outcome &b) {
  return a.writes == b.writes && a.lines == b.lines && a.notification == b.notification;
}

std::ostream &operator<<(std::ostream &out, const Outcome &outcome) {
  return out << testing::PrintToString(outcome.writes) << testing::PrintToString(outcome.lines) << outcome.notification;
}

constexpr int kReportAll = 5;
constexpr int kOtherCode = 1;

Outcome expected(const TableCase &c) {
  Outcome outcome;
  outcome.writes = textsThatApply(kKeys, c, c.changes | kAlways);
  outcome.lines = textsThatApply(kLines, c, c.reports_all ? kAllChanges : c.changes);
  if (!textsThatApply(kKeys, c, c.changes).empty() || c.reports_all) {
    outcome.notification = "event " + std::to_string(c.reports_all ? kReportAll : kOtherCode) + " nodes " +
                           (c.hasVideo() ? "5 " : "-1 ") + (c.hasAudio() ? "3" : "-1") + " flag " +
                           (c.codec == 1 ? "0" : "1");
  }
  return outcome;
}

_streaminfo newSettings(const TableCase &c) {
  _streaminfo info = zeroed<_streaminfo>();
  info.vcodec = c.codec;
  info.width = 640;
  info.height = 480;
  info.framerate = c.codec == 1 ? 120.0F : 30.0F;
  info.osdenable = info.flip = info.ldspoutput = 1;
  info.aenable = c.sound_on ? 1 : 0;
  info.acodec = 1;
  info.samplerate = 48000;
  info.channelno = 2;
  info.bitrate = 96000;
  info.volume = 70;
  return info;
}

// The same but for what is to have changed, and for all that does not count.
_streaminfo oldSettings(const TableCase &c) {
  const _streaminfo after = newSettings(c);
  _streaminfo before = untouched<_streaminfo>();
  const auto set = [&](unsigned change, int _streaminfo::*setting) {
    before.*setting = (c.changes & change) != 0 ? 1 - after.*setting : after.*setting;
  };
  set(kCodec, &_streaminfo::vcodec);
  set(kSize, &_streaminfo::width);
  set(kSize, &_streaminfo::height);
  before.framerate = (c.changes & kRate) != 0 ? 25.0F : after.framerate;
  set(kOverlay, &_streaminfo::osdenable);
  set(kFlip, &_streaminfo::flip);
  set(kMirror, &_streaminfo::mirror);
  set(kDisplay, &_streaminfo::ldspoutput);
  set(kSound, &_streaminfo::aenable);
  set(kFormat, &_streaminfo::acodec);
  set(kVolume, &_streaminfo::volume);
  return before;
}

// A request needs a camera, so that one that is seen to be missing has to come back in time.
void describeChannel(Host &host, const TableCase &c) {
  allowEncoding(host);
  host.chance.random = 4711;
  host.camera(5, "3-1.2")
      .listing(
          Listing().format("MJPG").size(640, 480).rate("120.000").format("YUYV").size(640, 480).rate("30.000").text());
  HostChannel channel = host.channel(4).exists(1).profile(2);
  channel.vnode(c.hasVideo() ? 5 : -1).anode(c.hasAudio() ? 3 : -1);
  if (!c.hasVideo()) host.config.beforeOpenNumber(3, [channel]() mutable { channel.vnode(5); });
}

Outcome actual(const TableCase &c) {
  Host host;
  describeChannel(host, c);
  _streaminfo after = newSettings(c);
  const _streaminfo before = oldSettings(c);
  EXPECT_EQ(vl_set_usbchn_stream(2, &after, &before, c.reports_all ? kReportAll : kOtherCode), 0);
  EXPECT_EQ(after.stream_type, c.stream_type);
  EXPECT_TRUE(host.journal.violations().empty());
  Outcome outcome{host.config.writes(), host.journal.only({"log"}), ""};
  for (const Datagram &sent : host.network.datagrams()) {
    outcome.notification += "event " + std::to_string(sent.word(48)) + " nodes " + std::to_string(sent.word(36)) + " " +
                            std::to_string(sent.word(40)) + " flag " + std::to_string(sent.word(44));
  }
  return outcome;
}

#ifdef USBDEV_FEWER_CASES
constexpr unsigned kStep = 7;
#else
constexpr unsigned kStep = 1;
#endif

class EveryStreamChange : public testing::TestWithParam<int> {};

TEST_P(EveryStreamChange, WritesLogsAndNotifiesWhatChangedAndApplies) {
  for (const int codec : {0, 1}) {
    for (const bool sound_on : {false, true}) {
      for (const bool reports_all : {false, true}) {
        for (unsigned changes = 0; changes <= kAllChanges; changes += kStep) {
          const TableCase c{GetParam(), codec, sound_on, reports_all, changes};
          ASSERT_EQ(actual(c), expected(c)) << "codec " << codec << " sound " << sound_on << " changes " << changes;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OfStreamType, EveryStreamChange, testing::Values(0, 1, 2, 3),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace contract
