#include <platform/alsa_ctl.h>
#include <usbdev/core.h>
#include <usbdev/hotplug.h>

#include "core/config.h"

using namespace usbdev;

int mn_set_usbchn_sps(int profile, int value) {
  int channel = kNone;
  if (trsProfiletoPlugCh(profile, &channel) != 0) return -1;
  const ConfigWriter config;
  if (!config) return -1;
  config.channel(channel).set(keys::spsstate, value);
  return 0;
}

int mn_set_usbdev_volume(int profile) {
  int number = kNone;
  if (trsProfiletoPlugCh(profile, &number) != 0) return -1;
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
