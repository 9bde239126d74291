#include <usbdev/profiles.h>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/stream_type.h"

int vl_get_profile_info(int profile, _profile_info *info) {
  using namespace usbdev;
  if (info == nullptr) return -1;
  presetProfile(*info);
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return -1;
  const ConfigReader config;
  if (!config) return -1;
  const Section &section = config.channel(channel);
  readProfile(section, *info);
  info->stream_type = static_cast<int>(readStreamType(section));
  return 0;
}

int vl_get_profileID(int channel) {
  const usbdev::ConfigReader config;
  if (!config) return -1;
  char name[16];
  usbdev::formatText(name, "ch%d", channel);  // any number makes a name
  return config.section(name).get(usbdev::keys::profile);
}

int vl_get_stream_info(int profile, _streaminfo *info) {
  using namespace usbdev;
  if (info == nullptr) return -1;
  info->stream_type = static_cast<int>(StreamType::none);
  presetProfileStream(*info);
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return -1;
  const ConfigReader config;
  if (!config) return -1;
  const Section &section = config.channel(channel);
  info->slot_switch = section.get(keys::slot_switch, 1);  // set also when the channel is refused
  if (section.get(keys::exists) == 0) return -2;
  if (section.get(keys::conflictch) != kNone) return -3;
  if (info->slot_switch == 0) return -4;
  readProfileStream(section, *info);
  info->vprofile = info->aprofile = profile;
  // Audio that is switched off does not count.
  const int anode = info->aenable == 0 ? kNone : info->anode;
  info->stream_type = static_cast<int>(streamTypeOf(info->vnode, anode));
  return 0;
}
