// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/device_placement.h"

#include "core/text.h"
#include "hotplug/audio_attachment.h"

namespace usbdev {
namespace {

void markConfigured(const ChannelSnapshots &known, ChannelRecords &channels) {
  for (int i = 0; i < kChannels; ++i) {
    if (known[i].exists != kNeverConfigured) channels[i].state = 1;
  }
}

/// What is to be done about the conflict mark of a channel whose camera is present.
ConflictTask taskOfPresent(const ChannelSnapshot &channel, bool may_encode) {
  if (channel.exists == 0 || channel.conflictch != kUnsupported) return ConflictTask::recompute;
  return may_encode ? ConflictTask::clear_and_recompute : ConflictTask{kUnsupported};
}

}  // namespace

bool placeCamera(const FoundDevice &camera, const ChannelSnapshots &known, bool may_encode, ChannelRecords &channels,
                 ConflictTasks &tasks) {
  markConfigured(known, channels);
  bool placed = false;
  for (int i = 0; i < kChannels; ++i) {
    if (!isSame(known[i].usbslot, camera.usbslot)) continue;
    if (placed || !isSame(known[i].devname, camera.name)) {
      channels[i].vnode = kNone;
      if (known[i].exists == 1) tasks[i] = ConflictTask::clear_and_recompute;
      continue;
    }
    placed = true;
    channels[i].vnode = camera.node;
    copyText(channels[i].usbslot, camera.usbslot);
    copyText(channels[i].devname, camera.name);
    tasks[i] = taskOfPresent(known[i], may_encode);
  }
  return placed;
}

const char *nameOfCard(const FoundDevice &card, const ChannelRecords &channels, const RecordList &new_cameras) {
  if (const char *known = RecordList(channels, kChannels).nameInPort(card.usbslot)) return known;
  if (const char *found = new_cameras.nameInPort(card.usbslot)) return found;
  return card.name;
}

bool placeCard(const FoundDevice &card, const char *name, const ChannelSnapshots &known, ChannelRecords &channels) {
  markConfigured(known, channels);
  bool placed = false;
  for (int i = 0; i < kChannels; ++i) {
    if (isIgnoredCardName(known[i].devname)) {
      channels[i].anode = kNone;
      channels[i].profile = kNone;
    } else if (isSame(known[i].usbslot, card.usbslot)) {
      channels[i].anode = kNone;
      placed = placed || isSame(known[i].devname, name);
    }
  }
  return placed;
}

}  // namespace usbdev
