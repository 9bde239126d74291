// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/information.h"

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/stream_type.h"

namespace usbdev {

bool readProfileInfo(int profile, _profile_info &info) {
  presetProfile(info);
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  const ConfigReader config;
  if (!config) return false;
  const Section section = config.channel(channel);
  readProfile(section, info);
  info.stream_type = static_cast<int>(readStreamType(section));
  return true;
}

int profileOfChannel(int channel) {
  const ConfigReader config;
  if (!config) return kNone;
  char name[16];
  // Intended: Any number is a channel.
  formatText(name, "ch%d", channel);
  return config.section(name).get(keys::profile);
}

StreamAccess readStreamInfo(int profile, _streaminfo &info) {
  info.stream_type = static_cast<int>(StreamType::none);
  presetProfileStream(info);
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return StreamAccess::no_channel;
  const ConfigReader config;
  if (!config) return StreamAccess::no_channel;
  const Section section = config.channel(channel);
  // Intended: The switch is set even if the channel is refused.
  info.slot_switch = section.get(keys::slot_switch, 1);
  if (section.get(keys::exists) == 0) return StreamAccess::unplugged;
  if (section.get(keys::conflictch) != kNone) return StreamAccess::conflict;
  if (info.slot_switch == 0) return StreamAccess::switched_off;
  readProfileStream(section, info);
  info.vprofile = info.aprofile = profile;
  // Intended: Audio that is off does not count here.
  const int anode = info.aenable == 0 ? kNone : info.anode;
  info.stream_type = static_cast<int>(streamTypeOf(info.vnode, anode));
  return StreamAccess::read;
}

}  // namespace usbdev
