// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>

#include "text.h"
#include "world.h"

namespace model {

namespace {

constexpr int kReportAll = 5;  // the event code with which every setting counts as changed

bool hasVideo(const _streaminfo &info) { return info.stream_type == 2 || info.stream_type == 3; }
bool hasAudio(const _streaminfo &info) { return info.stream_type == 1 || info.stream_type == 3; }
bool isH264(const _streaminfo &info) { return info.vcodec == 0; }

const char *switched(int value) { return value == 1 ? "Enabled" : "Disabled"; }

// The settings of the picture, which only an H.264 stream has.
struct PictureSetting {
  const char *key;
  int _streaminfo::*value;
  const char *line;  // null = never logged
};
constexpr PictureSetting kPicture[] = {
    {"video/osdenable", &_streaminfo::osdenable, "%s overlay timestamp on Channel %d"},
    {"video/flip", &_streaminfo::flip, "%s image reverse on Channel %d"},
    {"video/mirror", &_streaminfo::mirror, "%s image mirror on Channel %d"},
    {"video/ldspoutput", &_streaminfo::ldspoutput, nullptr},
};

}  // namespace

void World::logStream(int profile, const _streaminfo &new_info, const _streaminfo &old_info, float rate,
                      int event_code) {
  const int number = profile + 1;
  const auto changed = [&](auto value, auto before) { return value != before || event_code == kReportAll; };
  if (hasVideo(new_info)) {
    if (changed(new_info.vcodec, old_info.vcodec)) {
      log(0, format("Modified Channel %d video format: %s", number, new_info.vcodec == 1 ? "MJPEG" : "H.264"));
    }
    if (changed(new_info.width, old_info.width) || changed(new_info.height, old_info.height)) {
      log(0, format("Modified Channel %d resolution: %dx%d", number, new_info.width, new_info.height));
    }
    if (changed(rate, old_info.framerate)) {
      log(0, format("Modified Channel %d FPS: %3.2f", number, static_cast<double>(rate)));
      if (rate > 60.0F) {
        log(1, format("Modified Channel %d frame rate to over 60 FPS. Decode error may occur.", number));
      }
    }
    for (const auto &[key, value, line] : kPicture) {
      if (!isH264(new_info) || line == nullptr || !changed(new_info.*value, old_info.*value)) continue;
      log(0, format(line, switched(new_info.*value), number));
    }
  }
  if (!hasAudio(new_info)) return;
  if (changed(new_info.aenable, old_info.aenable)) {
    log(0, format("%s audio on Channel %d", switched(new_info.aenable), number));
  }
  if (new_info.aenable != 1) return;
  if (changed(new_info.acodec, old_info.acodec)) {
    log(0, format("Modified Channel %d audio format: %s", number, new_info.acodec == 0 ? "G711 u-law" : "AAC"));
  }
  if (changed(new_info.volume, old_info.volume)) {
    log(0, format("Modified Channel %d audio volume: %d", number, new_info.volume));
  }
}

// Both return whether something changed.
bool World::storeVideo(Channel *channel, const _streaminfo &new_info, const _streaminfo &old_info, float rate) {
  bool changed = false;
  const auto store = [&](const char *key, int value, int before) {
    if (value == before) return;
    channel->set(key, value);
    changed = true;
  };
  channel->set("video/venable", 1);
  store("video/vcodec", new_info.vcodec, old_info.vcodec);
  store("video/width", new_info.width, old_info.width);
  store("video/height", new_info.height, old_info.height);
  if (rate != old_info.framerate) {
    channel->set("video/framerate", format("%3.2f", static_cast<double>(rate)));
    changed = true;
  }
  if (new_info.vcodec == 1 && changed) channel->set("vtag", next_ssid);
  if (!isH264(new_info)) return changed;
  channel->set("video/spsstate", 0);
  for (const auto &[key, value, line] : kPicture) store(key, new_info.*value, old_info.*value);
  return changed;
}

bool World::storeAudio(Channel *channel, const _streaminfo &new_info, const _streaminfo &old_info) {
  bool changed = new_info.aenable != old_info.aenable;
  if (changed) channel->set("audio/aenable", new_info.aenable);
  if (new_info.aenable != 1) return changed;
  if (new_info.acodec != old_info.acodec) {
    channel->set("audio/acodec", new_info.acodec);
    channel->set("audio/samplerate", new_info.samplerate);
    channel->set("audio/channelno", new_info.channelno);
    channel->set("audio/bitrate", new_info.bitrate);
    changed = true;
  }
  if (new_info.volume != old_info.volume) {
    channel->set("audio/volume", new_info.volume);
    changed = true;
  }
  return changed;
}

int World::vl_set_usbchn_stream(int profile, _streaminfo *new_info, const _streaminfo *old_info, int event_code) {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  Channel &channel = channels[n];
  float rate = channel.rate();
  if (findclosedFPS(profile, new_info, &rate) != 0) return -1;
  if (channel.streamType() != 0) new_info->stream_type = channel.streamType();
  logStream(profile, *new_info, *old_info, rate, event_code);
  const int vnode = channel.vnode();
  const int anode = channel.anode();
  bool changed = false;
  if (hasVideo(*new_info)) changed |= storeVideo(&channel, *new_info, *old_info, rate);
  if (hasAudio(*new_info)) changed |= storeAudio(&channel, *new_info, *old_info);
  if (changed || event_code == kReportAll) {
    notify(event_code, profile, vnode, anode, isH264(*new_info) ? 1 : 0, profile,
           std::string(std::begin(new_info->header), std::end(new_info->header)));
  }
  return 0;
}

}  // namespace model
