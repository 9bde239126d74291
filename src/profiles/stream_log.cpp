// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/stream_log.h"

#include "core/event_log.h"
#include "devices/stream_type.h"

namespace usbdev {
namespace {

/// The lines of one change of a profile's stream; users know a channel by its profile's number from 1.
class StreamLog {
 public:
  StreamLog(int profile, const _streaminfo &new_info, const _streaminfo &old_info, EventCode code)
      : number_(profile + 1), new_(new_info), old_(old_info), reports_all_(code == EventCode::report_all) {}

  void addVideo(float chosen_fps) const {
    if (isReported(&_streaminfo::vcodec)) {
      logEvent(EventLevel::information, "Modified Channel %d video format: %s", number_,
               static_cast<Codec>(new_.vcodec) == Codec::mjpeg ? "MJPEG" : "H.264");
    }
    if (isReported(&_streaminfo::width) || isReported(&_streaminfo::height)) {
      logEvent(EventLevel::information, "Modified Channel %d resolution: %dx%d", number_, new_.width, new_.height);
    }
    if (reports_all_ || chosen_fps != old_.framerate) addRate(chosen_fps);
    if (static_cast<Codec>(new_.vcodec) != Codec::h264) return;
    addSwitch(&_streaminfo::osdenable, "overlay timestamp");
    addSwitch(&_streaminfo::flip, "image reverse");
    addSwitch(&_streaminfo::mirror, "image mirror");
  }

  void addAudio() const {
    addSwitch(&_streaminfo::aenable, "audio");
    if (new_.aenable != 1) return;
    if (isReported(&_streaminfo::acodec)) {
      logEvent(EventLevel::information, "Modified Channel %d audio format: %s", number_,
               new_.acodec == 0 ? "G711 u-law" : "AAC");
    }
    if (isReported(&_streaminfo::volume)) {
      logEvent(EventLevel::information, "Modified Channel %d audio volume: %d", number_, new_.volume);
    }
  }

 private:
  bool isReported(int _streaminfo::*setting) const { return reports_all_ || new_.*setting != old_.*setting; }

  void addRate(float fps) const {
    logEvent(EventLevel::information, "Modified Channel %d FPS: %3.2f", number_, static_cast<double>(fps));
    if (fps > 60) {
      logEvent(EventLevel::warning, "Modified Channel %d frame rate to over 60 FPS. Decode error may occur.", number_);
    }
  }

  void addSwitch(int _streaminfo::*setting, const char *what) const {
    if (!isReported(setting)) return;
    const char *state = new_.*setting == 1 ? "Enabled" : "Disabled";
    logEvent(EventLevel::information, "%s %s on Channel %d", state, what, number_);
  }

  int number_;
  const _streaminfo &new_;
  const _streaminfo &old_;
  bool reports_all_;
};

}  // namespace

void logStreamChange(int profile, const _streaminfo &new_info, const _streaminfo &old_info, float chosen_fps,
                     EventCode code) {
  const StreamLog log(profile, new_info, old_info, code);
  const StreamType type{new_info.stream_type};
  if (hasVideo(type)) log.addVideo(chosen_fps);
  if (hasAudio(type)) log.addAudio();
}

}  // namespace usbdev
