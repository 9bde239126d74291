// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/profile_mapping.h"

namespace usbdev {

int channelOfProfile(int profile) {
  if (!isProfile(profile)) return kNone;
  const ConfigReader config;
  if (!config) return kNone;
  for (int i = 0; i < kChannels; ++i) {
    if (config.channel(i).get(keys::profile) == profile) return i;
  }
  return kNone;
}

bool readDeviceName(int profile, char (&name)[256]) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  // Intended: A failed open prints nothing.
  const ConfigReader config(OpenFailure::silent);
  if (!config) return false;
  config.channel(channel).get(keys::devname, name);
  return true;
}

void writeUnbound(const Section &channel) {
  channel.set(keys::profile, kNone);
  channel.set(keys::createtime, "");
  channel.set(keys::profilename, "");
  channel.set(keys::hlspath, "");
}

}  // namespace usbdev
