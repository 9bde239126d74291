// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/listings.h"

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/formats.h"
#include "devices/stream_type.h"

namespace usbdev {
namespace {

/// Profile ids, each with a comma before it, cut at 15 characters.
class ProfileIds {
 public:
  void add(int profile) { appendNumber(text_, ",%d", profile); }

  /// Gives what follows the first comma, which is nothing in an empty text too: all of it is zero.
  void giveTo(ProfileList &list) const { copyText(list, text_ + 1); }

 private:
  char text_[sizeof(ProfileList)] = "";
};

/// The camera is asked last, and only when nothing else decides.
bool canStream(HostAnswers &host, const Section &channel) {
  if (channel.get(keys::exists) == 0 || channel.get(keys::conflictch) != kNone) return false;
  if (channel.get(keys::anode) != kNone) return true;
  const int vnode = channel.get(keys::vnode);
  _usbfmt_des formats[USBDEV_FORMATS];
  bool over60 = false;
  return vnode != kNone && listFormats(host, vnode, formats, over60) > 0;
}

}  // namespace

bool listFreeProfiles(ProfileList &list) {
  const ConfigReader config;
  if (!config) return false;
  bool used[kProfiles] = {};
  for (int i = 0; i < kChannels; ++i) {
    const int profile = config.channel(i).get(keys::profile);
    if (isProfile(profile)) used[profile] = true;
  }
  ProfileIds free_profiles;
  for (int i = 0; i < kProfiles; ++i) {
    if (!used[i]) free_profiles.add(i);
  }
  free_profiles.giveTo(list);
  return true;
}

bool listStreamableProfiles(ProfileList &list) {
  const ReaderOverCommands config;
  if (!config) return false;
  HostAnswers host;
  ProfileIds streamable;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    const int profile = channel.get(keys::profile);
    if (isProfile(profile) && canStream(host, channel)) streamable.add(profile);
  }
  streamable.giveTo(list);
  return true;
}

bool listChannels(_usbdev_entry *rows) {
  const ConfigReader config;
  if (!config) return false;
  std::memset(rows, 0, kChannels * sizeof *rows);
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    // Intended: A row of zeros has profile 0, not -1.
    if (channel.get(keys::exists) == 0) continue;
    readDeviceRow(channel, rows[i]);
    const StreamType type = readStreamType(channel);
    rows[i].stream_type = static_cast<int>(type);
    if (type == StreamType::video) rows[i].aenable = 0;
  }
  return true;
}

bool listProfiles(_usbdev_entry *rows) {
  const ConfigReader config;
  if (!config) return false;
  std::memset(rows, 0, kProfiles * sizeof *rows);
  for (int i = 0; i < kProfiles; ++i) rows[i].profile = kNone;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    const int profile = channel.get(keys::profile);
    if (!isProfile(profile)) continue;
    _usbdev_entry &row = rows[profile];
    readProfileRow(channel, row);
    const StreamType type = readStreamType(channel);
    row.stream_type = static_cast<int>(type);
    row.mjpeg = 0;
    if (!hasVideo(type)) continue;
    addVideoToRow(channel, row);
    row.mjpeg = static_cast<Codec>(row.vcodec) == Codec::mjpeg ? 1 : 0;
  }
  return true;
}

}  // namespace usbdev
