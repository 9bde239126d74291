// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <cstring>

#include "settings.h"
#include "world.h"

namespace model {

namespace {

constexpr int kNotAvailable = -1;

void describe(const Channel &channel, _availinfo *row) {
  readSettings(channel, row);
  copy(row->usbslot, channel.slot());
  copy(row->devname, channel.name());
  row->aenable = channel.number("audio/aenable", 1);
  copy(row->acap, channel.text("audio/acap"));
  if (row->stream_type == 1) row->framerate = 0;
}

// What both tables show.
void describe(const Channel &channel, _usbdev_entry *row) {
  copy(row->profilename, channel.text("profilename"));
  copy(row->usbslot, channel.slot());
  copy(row->devname, channel.name());
  row->slot_switch = channel.number("slot_switch", 1);
  row->stream_type = channel.streamType();
  row->exists = channel.number("exists", 0);
  row->conflictch = channel.conflict();
  copy(row->createtime, channel.text("createtime"));
  row->profile = channel.profile();
}

// The list of ids has room for 15 characters with its leading comma, and is copied without a zero at its end.
void writeIds(const std::string &ids, char *out) {
  const std::string cut = ids.substr(0, 15);
  if (!cut.empty()) memcpy(out, cut.data() + 1, cut.size() - 1);
}

}  // namespace

int World::vl_get_available_dev(_availinfo *rows) const {
  memset(rows, 0, sizeof(_availinfo) * USBDEV_CHANNELS);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (channels[n].hasProfile() || channels[n].isParked()) continue;
    describe(channels[n], &rows[n]);
    if (rows[n].stream_type == 2) rows[n].aenable = 0;
  }
  return 0;
}

int World::vl_get_available_dev_N_channel(_availinfo *rows, int profile) const {
  if (profile < -1 || profile > 3) return -1;
  memset(rows, 0, sizeof(_availinfo) * USBDEV_CHANNELS);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (channels[n].profile() == profile && !channels[n].isParked()) {
      describe(channels[n], &rows[n]);
    } else {
      rows[n].stream_type = kNotAvailable;
    }
  }
  return 0;
}

int World::vl_get_available_profile(char *out) const {
  std::string ids;
  for (int profile = 0; profile < USBDEV_PROFILES; ++profile) {
    if (channelOf(profile) == -1) ids += "," + std::to_string(profile);
  }
  writeIds(ids, out);
  return 0;
}

int World::vl_get_usbdev_list(char *out) const {
  std::string ids;
  for (const Channel &channel : channels) {
    const bool video = channel.hasVideo() && !capOf(channel.vnode()).empty();
    const bool known = channel.profile() >= 0 && channel.profile() <= 3;
    if (!channel.exists() || !(video || channel.hasAudio()) || !known || channel.isParked()) continue;
    ids += "," + std::to_string(channel.profile());
  }
  writeIds(ids, out);
  return 0;
}

int World::vl_get_devpf_list(_usbdev_entry *rows) const {
  memset(rows, 0, sizeof(_usbdev_entry) * USBDEV_CHANNELS);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (!channels[n].exists()) continue;
    describe(channels[n], &rows[n]);
    rows[n].shrenable = channels[n].number("sharelink/shrenable", 0);
    rows[n].aenable = rows[n].stream_type == 2 ? 0 : channels[n].number("audio/aenable", 1);
  }
  return 0;
}

int World::vl_get_profile_list(_usbdev_entry *rows) const {
  memset(rows, 0, sizeof(_usbdev_entry) * USBDEV_PROFILES);
  for (int profile = 0; profile < USBDEV_PROFILES; ++profile) rows[profile].profile = -1;
  for (const Channel &channel : channels) {
    if (channel.profile() < 0 || channel.profile() > 3) continue;
    _usbdev_entry &row = rows[channel.profile()];
    describe(channel, &row);
    row.mjpeg = 0;
    if (!channel.hasVideo()) continue;
    row.vcodec = channel.number("video/vcodec", 1);
    row.mjpeg = row.vcodec == 1 ? 1 : 0;
    copy(row.vtag, channel.text("vtag"));
    row.shrenable = channel.number("sharelink/shrenable", 0);
    copy(row.hlspath, channel.text("hlspath"));
  }
  return 0;
}

}  // namespace model
