// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/channel_snapshot.h"

namespace usbdev {

// Here, so that the ten of them are not set up anew in the code of everyone who reads them.
ChannelSnapshot::ChannelSnapshot() = default;

void readForComparing(const OpenConfig &config, ChannelSnapshots &channels) {
  for (int i = 0; i < kChannels; ++i) {
    const Section section = config.channel(i);
    ChannelSnapshot &channel = channels[i];
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
    // Intended: The sound card of a replaced camera is 0 if it was never stored.
    channel.anode = section.get(keys::anode, 0);
    section.get(keys::acap, channel.acap);
  }
}

bool readForComparing(ChannelSnapshots &channels, OpenFailure failure) {
  const ConfigReader config(failure);
  if (!config) return false;
  readForComparing(config, channels);
  return true;
}

void readForScan(const OpenConfig &config, ChannelSnapshots &channels) {
  for (int i = 0; i < kChannels; ++i) {
    const Section section = config.channel(i);
    ChannelSnapshot &channel = channels[i];
    channel.exists = section.get(keys::exists, kNeverConfigured);
    channel.conflictch = section.get(keys::conflictch);
    section.get(keys::usbslot, channel.usbslot);
    section.get(keys::devname, channel.devname);
  }
}

void readForStartUp(const OpenConfig &config, ChannelSnapshots &channels) {
  for (int i = 0; i < kChannels; ++i) {
    const Section section = config.channel(i);
    ChannelSnapshot &channel = channels[i];
    channel.exists = section.get(keys::exists, kNeverConfigured);
    if (channel.exists == kNeverConfigured) continue;
    channel.slot_switch = section.get(keys::slot_switch);
    channel.profile = section.get(keys::profile);
    section.get(keys::hlspath, channel.hlspath);
    if (section.get(keys::shrenable) != 0) section.get(keys::hash_string, channel.share_link);
  }
}

}  // namespace usbdev
