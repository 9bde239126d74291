#include <platform/alsa_ctl.h>
#include <usbdev/hotplug.h>

#include "core/config.h"
#include "core/profile_mapping.h"

using namespace usbdev;

int mn_set_usbchn_sps(int profile, int value) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return -1;
  ConfigWriter config;
  if (!config) return -1;
  config.channel(channel).set(keys::spsstate, value);
  return config.save() ? 0 : -1;
}

int mn_set_usbdev_volume(int profile) {
  const int number = channelOfProfile(profile);
  if (number == kNone) return -1;
  int card = kNone;
  int volume = 0;
  {
    const ConfigReader config;
    if (!config) return -1;
    const Section &channel = config.channel(number);
    if (channel.get(keys::exists) != 0) card = channel.get(keys::anode);
    volume = channel.get(keys::volume);
  }
  if (card == kNone) return -1;
  return ac_set_audio_volume(card, volume == 0 ? -1 : volume);  // the host's word for silence is -1
}
