// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/channel_setters.h"

#include <platform/alsa_ctl.h>

#include "core/config.h"
#include "core/profile_mapping.h"

namespace usbdev {

bool storeSpsState(int profile, int value) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  ConfigWriter config;
  if (!config) return false;
  config.channel(channel).set(keys::spsstate, value);
  return config.save();
}

int applyStoredVolume(int profile) {
  const int number = channelOfProfile(profile);
  if (number == kNone) return -1;
  int card = kNone;
  int volume = 0;
  {
    const ConfigReader config;
    if (!config) return -1;
    const Section channel = config.channel(number);
    if (channel.get(keys::exists) != 0) card = channel.get(keys::anode);
    volume = channel.get(keys::volume);
  }
  if (card == kNone) return -1;
  // Intended: A volume of 0 is sent as -1.
  return ac_set_audio_volume(card, volume == 0 ? -1 : volume);
}

}  // namespace usbdev
