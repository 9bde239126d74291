// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/channel_choice.h"

#include "core/text.h"
#include "hotplug/device_type.h"

namespace usbdev {
namespace {

void choose(ChannelChoice &choice, int channel, int profile) {
  choice.channel = channel;
  choice.profile = profile;
}

/// A channel with another port, or with none yet: the first free one is taken.
void considerOtherPort(ChannelChoice &choice, int i, const ChannelSnapshot &channel) {
  if (choice.channel != kNone) return;
  const bool never_used = channel.usbslot[0] == '\0';
  if (never_used || (channel.profile == kNone && channel.exists != 1)) choose(choice, i, channel.profile);
}

/// A channel that knows the port; true when the choice is final.
bool considerSamePort(ChannelChoice &choice, int i, const ChannelSnapshot &channel, const _usbdev_des &device) {
  if (choice.replaced != kNone) return false;
  if (channel.profile == kNone) {
    choose(choice, i, kNone);
    // Intended: A card takes the name of its channel.
    if (!isCamera(device) && channel.exists != 0) choice.rename = channel.devname;
    return false;
  }
  const bool attached = channel.exists == 1;
  // If an earlier channel gave the card its name, this channel is compared with that name.
  const bool same_name = isSame(channel.devname, choice.rename != nullptr ? choice.rename : device.devname);
  if (same_name || (attached && !isCamera(device))) {
    choose(choice, i, channel.profile);
    choice.exact_match = true;
    return true;
  }
  if (attached) {
    choice.replaced = i;
    choice.profile = kNone;
  }
  return false;
}

}  // namespace

ChannelChoice chooseForPlugged(const ChannelSnapshots &channels, const _usbdev_des &device) {
  ChannelChoice choice;
  for (int i = 0; i < kChannels; ++i) {
    if (!isSame(channels[i].usbslot, device.usbslot)) {
      considerOtherPort(choice, i, channels[i]);
    } else if (considerSamePort(choice, i, channels[i], device)) {
      break;
    }
  }
  return choice;
}

ChannelChoice chooseForRemoved(const ChannelSnapshots &channels, const _usbdev_des &device) {
  ChannelChoice choice;
  for (int i = 0; i < kChannels; ++i) {
    if (channels[i].exists != 1 || !isSame(channels[i].usbslot, device.usbslot)) continue;
    choose(choice, i, channels[i].profile);
    break;
  }
  return choice;
}

}  // namespace usbdev
