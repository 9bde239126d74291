// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/stream_settings.h"

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/stream_type.h"
#include "profiles/frame_rates.h"
#include "profiles/stream_log.h"
#include "web/link_ids.h"

namespace usbdev {
namespace {

/// What the channel has before the change.
struct Standing {
  int vnode;
  int anode;
  float rate;
};

bool readStanding(int channel, Standing &standing) {
  const ConfigReader config;
  if (!config) return false;
  const Section section = config.channel(channel);
  standing.vnode = section.get(keys::vnode);
  standing.anode = section.get(keys::anode);
  standing.rate = readRate(section);
  return true;
}

/// Writes to one channel what differs from the record as it stood.
class ChangedSettings {
 public:
  ChangedSettings(const Section &channel, const _streaminfo &new_info, const _streaminfo &old_info)
      : channel_(channel), new_(new_info), old_(old_info) {}

  bool any() const { return any_; }

  void writeVideo(float chosen_fps) {
    // Intended: This is written even if nothing changed.
    channel_.set(keys::venable, 1);
    write(keys::vcodec, &_streaminfo::vcodec);
    write(keys::width, &_streaminfo::width);
    write(keys::height, &_streaminfo::height);
    if (chosen_fps != old_.framerate) writeRate(chosen_fps);
    if (static_cast<Codec>(new_.vcodec) == Codec::mjpeg && any_) writeNewTag();
    if (static_cast<Codec>(new_.vcodec) == Codec::h264) writeEncoding();
  }

  void writeAudio() {
    write(keys::aenable, &_streaminfo::aenable);
    if (new_.aenable != 1) return;
    if (write(keys::acodec, &_streaminfo::acodec)) {
      channel_.set(keys::samplerate, new_.samplerate);
      channel_.set(keys::channelno, new_.channelno);
      channel_.set(keys::bitrate, new_.bitrate);
    }
    write(keys::volume, &_streaminfo::volume);
  }

 private:
  bool write(const IntKey &key, int _streaminfo::*setting) {
    if (new_.*setting == old_.*setting) return false;
    channel_.set(key, new_.*setting);
    any_ = true;
    return true;
  }

  void writeRate(float fps) {
    char text[16];
    formatText(text, "%3.2f", static_cast<double>(fps));
    channel_.set(keys::framerate, text);
    any_ = true;
  }

  /// For viewers a changed MJPEG stream is a new stream.
  void writeNewTag() {
    char tag[16] = "";
    makeShareId(tag);
    channel_.set(keys::vtag, tag);
  }

  /// Writes the settings of pictures that the host encodes.
  void writeEncoding() {
    channel_.set(keys::spsstate, 0);
    write(keys::osdenable, &_streaminfo::osdenable);
    write(keys::flip, &_streaminfo::flip);
    write(keys::mirror, &_streaminfo::mirror);
    write(keys::ldspoutput, &_streaminfo::ldspoutput);
  }

  Section channel_;
  const _streaminfo &new_;
  const _streaminfo &old_;
  bool any_ = false;
};

}  // namespace

bool setStream(int profile, _streaminfo &new_info, const _streaminfo &old_info, EventCode code) {
  const int channel = channelOfProfile(profile);
  Standing standing;
  if (channel == kNone || !readStanding(channel, standing)) return false;

  float chosen_fps = standing.rate;
  if (!findRate(profile, new_info, chosen_fps)) return false;
  const StreamType standing_type = streamTypeOf(standing.vnode, standing.anode);
  if (standing_type != StreamType::none) new_info.stream_type = static_cast<int>(standing_type);
  const StreamType type{new_info.stream_type};

  bool changed = false;
  {
    WriterOverCommands config;
    if (!config) return false;
    // Intended: The events come before the settings.
    logStreamChange(profile, new_info, old_info, chosen_fps, code);
    ChangedSettings settings(config.channel(channel), new_info, old_info);
    if (hasVideo(type)) settings.writeVideo(chosen_fps);
    if (hasAudio(type)) settings.writeAudio();
    changed = settings.any();
    if (!config.save()) return false;
  }
  if (!changed && code != EventCode::report_all) return true;
  ChangeNotification notification(profile, code);
  std::memcpy(notification.request_header, new_info.header, sizeof notification.request_header);
  notification.vnode = standing.vnode;
  notification.anode = standing.anode;
  notification.flag = static_cast<Codec>(new_info.vcodec) == Codec::h264 ? 1 : 0;
  notification.target = profile;
  return sendNotification(notification);
}

}  // namespace usbdev
