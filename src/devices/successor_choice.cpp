// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/successor_choice.h"

#include "devices/creation_time.h"

namespace usbdev {
namespace {

/// A waiting channel can take over when its device is attached, has a profile and is switched on.
bool mayStream(const ChannelSnapshot &channel) {
  return channel.exists != 0 && channel.profile != kNone && channel.slot_switch == 1;
}

}  // namespace

Successor chooseSuccessor(const ChannelSnapshots &channels, const ChannelMarks &waiting, const char *now) {
  Successor successor;
  const char *best_time = now;
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = channels[i];
    if (!waiting[i] || !mayStream(other)) continue;
    if (successor.channel == kNone) {
      successor.channel = i;
      successor.profile = other.profile;
      successor.nodes[successor.node_count++] = other.vnode;
      // Intended: The port of the first choice stays.
      successor.slot = other.usbslot;
    }
    const Earlier earlier = earlierOf(best_time, other.createtime);
    if (earlier == Earlier::first || (earlier == Earlier::neither && other.profile >= successor.profile)) continue;
    // Intended: A bridge that was found stays.
    if (successor.channel != i) successor.nodes[successor.node_count++] = other.vnode;
    successor.channel = i;
    successor.profile = other.profile;
    best_time = other.createtime;
  }
  return successor;
}

}  // namespace usbdev
