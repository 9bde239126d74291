#include "core/profile_mapping.h"

#include <usbdev/core.h>

#include "core/config.h"
#include "core/text.h"

int usbdev::channelOfProfile(int profile) {
  if (!isProfile(profile)) return kNone;
  const ConfigReader config;
  if (!config) return kNone;
  for (int i = 0; i < kChannels; ++i) {
    if (config.channel(i).get(keys::profile) == profile) return i;
  }
  return kNone;
}

int trsProfiletoPlugCh(int profile, int *channel) {
  if (channel == nullptr) return -1;
  const int found = usbdev::channelOfProfile(profile);
  if (found == usbdev::kNone) return -1;
  *channel = found;
  return 0;
}

int vl_getDevName(int profile, char *name) {
  if (name == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(profile);
  if (channel == usbdev::kNone) return -1;
  char devname[256];
  {
    // Silent, unlike every other reader.
    const usbdev::ConfigReader config(usbdev::OpenFailure::silent);
    if (!config) return -1;
    config.channel(channel).get(usbdev::keys::devname, devname);
  }
  usbdev::copyCut(name, devname, sizeof devname - 1);
  return 0;
}
