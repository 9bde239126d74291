#include "devices/channel_state.h"

namespace usbdev {

void readChannels(const ConfigSession &config, ChannelStates &channels) {
  for (int i = 0; i < kChannels; ++i) {
    const Section &section = config.channel(i);
    ChannelState &channel = channels[i];
    channel.exists = section.get(keys::exists);
    channel.profile = section.get(keys::profile);
    section.get(keys::usbslot, channel.usbslot);
    section.get(keys::devname, channel.devname);
    section.get(keys::profilename, channel.profilename);
    section.get(keys::createtime, channel.createtime);
    channel.slot_switch = section.get(keys::slot_switch);
    channel.switched_on = section.get(keys::slot_switch, 1) == 1;
    channel.vcodec = section.get(keys::vcodec);
    channel.vnode = section.get(keys::vnode);
    channel.conflictch = section.get(keys::conflictch);
    channel.anode = section.get(keys::anode, 0);  // read for a replaced channel only, with a default of its own
    section.get(keys::acap, channel.acap);
  }
}

bool readChannels(ChannelStates &channels, OpenFailure failure) {
  const ConfigReader config(failure);
  if (!config) return false;
  readChannels(config, channels);
  return true;
}

void markConflicts(ConflictTest &test, const ChannelStates &channels, int own, ChannelMarks &conflicting) {
  for (int i = 0; i < kChannels; ++i) {
    const ChannelState &other = channels[i];
    conflicting[i] = i != own && other.hasCamera() && test.conflictsWith(other.usbslot, other.vnode);
  }
}

void writeParked(const ConfigSession &config, const ChannelMarks &parked, int behind) {
  for (int i = 0; i < kChannels; ++i) {
    if (parked[i]) config.channel(i).set(keys::conflictch, behind);
  }
}

void writeUnbound(const Section &channel) {
  channel.set(keys::profile, kNone);
  channel.set(keys::createtime, "");
  channel.set(keys::profilename, "");
  channel.set(keys::hlspath, "");
}

}  // namespace usbdev
