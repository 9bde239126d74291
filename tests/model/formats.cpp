// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <cstring>

#include "text.h"
#include "world.h"

namespace model {

// A camera that offers nothing usable leaves the table as it is.
int World::mn_get_usbchn_fmts(int vnode, _usbfmt_des *table, int *over60) const {
  *over60 = 0;
  _usbfmt_des all[USBDEV_FORMATS];
  memset(all, 0, sizeof all);
  int count = 0;
  const auto camera = host.cameras.find(vnode);
  for (size_t i = 0; camera != host.cameras.end() && i < camera->second.formats.size(); ++i) {
    const Format &format = camera->second.formats[i];
    if (format.code != "MJPG" && !(format.code == "YUYV" && host.encoder)) continue;
    _usbfmt_des &row = all[count++];
    row.index = static_cast<int>(i);
    row.codec = format.code == "MJPG" ? 1 : 0;
    for (const Size &size : format.sizes) {
      _usbres_des &res = row.res[row.res_count++];
      res.width = size.width;
      res.height = size.height;
      for (const float rate : size.rates) {
        res.fps[res.fps_count++] = rate;
        if (rate > 60.0F) *over60 = 1;
      }
    }
  }
  if (count != 0) memcpy(table, all, sizeof all);
  return count;
}

// The codecs that it offers, as "1 0".
std::string World::capOf(int vnode) const {
  _usbfmt_des table[USBDEV_FORMATS];
  int over60 = 0;
  const int count = mn_get_usbchn_fmts(vnode, table, &over60);
  std::string cap;
  for (int i = 0; i < count; ++i) cap += (i == 0 ? "" : " ") + std::to_string(table[i].codec);
  return cap;
}

bool World::isOver60(int vnode) const {
  _usbfmt_des table[USBDEV_FORMATS];
  int over60 = 0;
  mn_get_usbchn_fmts(vnode, table, &over60);
  return over60 == 1;
}

// Of a device that is unplugged or switched off nothing is offered.
int World::capableChannelOf(int profile) const {
  const int n = channelOf(profile);
  return n == -1 || !channels[n].exists() || channels[n].number("slot_switch", 1) == 0 ? -1 : n;
}

int World::vl_get_usbchn_cap(int profile, _usbfmt_des *table) const {
  const int n = capableChannelOf(profile);
  int over60 = 0;
  return n == -1 || !channels[n].hasVideo() ? -1 : mn_get_usbchn_fmts(channels[n].vnode(), table, &over60);
}

int World::vl_get_profile_video_cap(int profile, char *cap) const {
  const int n = capableChannelOf(profile);
  if (n == -1 || !channels[n].hasVideo()) return -1;
  snprintf(cap, 16, "%s", channels[n].text("video/cap").c_str());
  return 0;
}

int World::vl_get_usbchn_audio_cap(int profile, char *cap) const {
  const int n = capableChannelOf(profile);
  if (n == -1 || !channels[n].hasAudio()) return -1;
  snprintf(cap, 16, "%s", channels[n].text("audio/acap").c_str());
  return 0;
}

int World::findclosedFPS(int profile, const _streaminfo *request, float *chosen_fps) const {
  _usbfmt_des table[USBDEV_FORMATS];
  memset(table, 0, sizeof table);
  const int count = vl_get_usbchn_cap(profile, table);
  for (int f = 0; f < count; ++f) {
    if (table[f].codec != request->vcodec) continue;
    for (int r = 0; r < table[f].res_count; ++r) {
      const _usbres_des &size = table[f].res[r];
      if (size.width != request->width || size.height != request->height) continue;
      if (request->framerate <= 0 || size.fps_count == 0) return 0;
      *chosen_fps = size.fps[size.fps_count - 1];
      for (int i = size.fps_count - 1; i >= 0; --i) {
        if (size.fps[i] <= request->framerate) *chosen_fps = size.fps[i];
      }
      return 0;
    }
    return -1;  // only the first format of a codec counts
  }
  return -1;
}

}  // namespace model
