#include <usbdev/profiles.h>

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"

int vl_get_profile_info(int profile, _profile_info *info) {
  using namespace usbdev;
  if (info == nullptr) return -1;
  std::memset(info, 0, sizeof *info);
  presetSettings(kProfileInfo, *info);
  info->exists = -1;
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return -1;
  const ConfigReader config;
  if (!config) return -1;
  const Section &section = config.channel(channel);
  readSettings(kProfileInfo, section, *info);
  info->stream_type = readStreamType(section);
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
  info->stream_type = kNoStream;
  presetSettings(kStreamInfo, *info);
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return -1;
  const ConfigReader config;
  if (!config) return -1;
  const Section &section = config.channel(channel);
  info->slot_switch = section.get(keys::slot_switch, 1);  // set also when the channel is refused
  if (section.get(keys::exists) == 0) return -2;
  if (section.get(keys::conflictch) != kNone) return -3;
  if (info->slot_switch == 0) return -4;
  readSettings(kStreamInfo, section, *info);
  info->vprofile = info->aprofile = profile;
  // Audio that is switched off does not count.
  info->stream_type = streamType(info->vnode, info->aenable == 0 ? kNone : info->anode);
  return 0;
}
