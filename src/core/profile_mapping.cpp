#include "core/profile_mapping.h"

#include <usbdev/core.h>

#include "core/config.h"
#include "core/text.h"

int trsProfiletoPlugCh(int profile, int *channel) {
  if (!usbdev::isProfile(profile) || channel == nullptr) return -1;
  const usbdev::ConfigReader config;
  if (!config) return -1;
  for (int i = 0; i < usbdev::kChannels; ++i) {
    if (config.channel(i).get(usbdev::keys::profile) == profile) {
      *channel = i;
      return 0;
    }
  }
  return -1;
}

int vl_getDevName(int profile, char *name) {
  if (name == nullptr) return -1;
  int channel = usbdev::kNone;
  if (trsProfiletoPlugCh(profile, &channel) != 0) return -1;
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
