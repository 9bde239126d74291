// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <cstring>

#include "settings.h"
#include "world.h"

namespace model {

namespace {

// What the records of a stream show before anything is read.
template <typename Record>
void preset(Record *info) {
  info->stream_type = 0;
  info->vnode = info->vprofile = info->anode = info->aprofile = -1;
  info->vcodec = 1;
  info->venable = info->spsstate = info->acodec = info->aenable = 0;
  info->width = 1280;
  info->height = 720;
  info->framerate = 30.0F;
  info->samplerate = 8000;
  info->channelno = 1;
  info->bitrate = 64000;
  info->volume = 50;
}

template <typename Record>
void presetPicture(Record *info) {
  info->osdenable = 1;
  info->flip = info->mirror = info->ldspoutput = 0;
}

// What every reader of a stream reads in the same way.
template <typename Record>
void readCommon(const Channel &channel, Record *info) {
  readSettings(channel, info);
  info->samplerate = channel.number("audio/samplerate", 8000);
  info->bitrate = channel.number("audio/bitrate", 64000);
}

void readStream(const Channel &channel, _streaminfo *info) {
  readCommon(channel, info);
  info->vprofile = info->aprofile = channel.profile();
  info->venable = channel.number("video/venable", 0);
  info->spsstate = channel.number("video/spsstate", 0);
  info->aenable = channel.number("audio/aenable", 0);
  info->anode = channel.anode();
  info->channelno = channel.number("audio/channelno", 1);
}

}  // namespace

int World::vl_get_profile_info(int profile, _profile_info *info) const {
  memset(info, 0, sizeof *info);
  info->exists = -1;
  preset(info);
  presetPicture(info);
  const int n = channelOf(profile);
  if (n == -1) return -1;
  const Channel &channel = channels[n];
  readCommon(channel, info);
  info->exists = channel.number("exists", 0);
  copy(info->profilename, channel.text("profilename"));
  copy(info->usbslot, channel.slot());
  copy(info->devname, channel.name());
  info->aenable = channel.number("audio/aenable", 1);
  copy(info->acap, channel.text("audio/acap"));
  return 0;
}

int World::vl_get_profileID(int channel) const {
  return channel < 0 || channel >= USBDEV_CHANNELS ? -1 : channels[channel].profile();
}

int World::vl_get_stream_info(int profile, _streaminfo *info) const {
  preset(info);
  presetPicture(info);
  info->slot_switch = 1;
  copy(info->fetype, "");
  copy(info->vtag, "");
  const int n = channelOf(profile);
  if (n == -1) return -1;
  const Channel &channel = channels[n];
  info->slot_switch = channel.number("slot_switch", 1);
  if (!channel.exists()) return -2;
  if (channel.isParked()) return -3;
  if (info->slot_switch == 0) return -4;
  readStream(channel, info);
  if (info->aenable == 0) info->stream_type = channel.hasVideo() ? 2 : 0;
  copy(info->vtag, channel.text("vtag"));
  return 0;
}

// Of two channels with the port the later one counts.
int World::vl_get_usbslot_info(const char *usbslot, _streaminfo *info) const {
  info->channel = -1;
  info->slot_switch = 1;
  preset(info);
  memset(info->fetype, 0, 4);
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (!channels[n].exists() || channels[n].slot() != usbslot) continue;
    info->channel = n;
    info->slot_switch = channels[n].number("slot_switch", 1);
    readStream(channels[n], info);
  }
  return 0;
}

int World::vl_get_usbslot_video_cap(const char *usbslot, char *cap) const {
  for (const Channel &channel : channels) {
    if (!channel.exists() || channel.slot() != usbslot) continue;
    if (!channel.hasVideo() || channel.number("slot_switch", 1) == 0) return -1;
    snprintf(cap, 16, "%s", channel.text("video/cap").c_str());
    return 0;
  }
  return 0;
}

}  // namespace model
