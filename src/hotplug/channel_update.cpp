// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/channel_update.h"

#include "core/channel_snapshot.h"
#include "core/config.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "devices/identification.h"
#include "web/link_ids.h"
#include "web/links.h"

namespace usbdev {
namespace {

void writePresence(const Section &channel, const _usbdev_update &record) {
  channel.set(keys::vnode, record.vnode);
  channel.set(keys::anode, record.anode);
  if (record.vnode != kNone || record.anode != kNone) {
    channel.set(keys::exists, 1);
    return;
  }
  channel.set(keys::exists, 0);
  channel.set(keys::conflictch, kNone);
  if (record.profile == kNone) writeUnbound(channel);
}

void writeCameraType(const Section &channel, const _usbdev_update &record) {
  char usbslot[128];
  copyText(usbslot, record.usbslot);
  char fetype[16] = "";
  findCameraType(record.vnode, usbslot, fetype);
  channel.set(keys::fetype, fetype);
  channel.set(keys::ldspoutput, 0);
}

/// True when the live link got a new name.
bool restoreLinks(const Section &channel, _usbdev_update &record) {
  const bool lost_name = record.hlspath[0] == '\0';
  if (lost_name) {
    makeHash(record.hlspath);
    channel.set(keys::hlspath, record.hlspath);
  }
  // Intended: A link that is there is followed.
  makeStreamLink(record.profile, record.hlspath);
  makeStreamLink(record.profile, record.hash);
  return lost_name;
}

/// Removes the links whose names could not be stored.
void takeBackLinks(const ChannelMarks &newly_named, ChannelRecords &records) {
  for (int i = 0; i < kChannels; ++i) {
    if (!newly_named[i]) continue;
    takeBackStreamLink(records[i].hlspath);
    records[i].hlspath[0] = '\0';
  }
}

}  // namespace

bool updateChannels(ChannelRecords &records) {
  WriterOverCommands config;
  if (!config) return false;
  ChannelMarks newly_named = {};
  // Intended: A missing switch is that of the channel before.
  int slot_switch = 1;
  for (int i = 0; i < kChannels; ++i) {
    _usbdev_update &record = records[i];
    if (record.state == kNeverConfigured) continue;
    const Section channel = config.channel(i);
    writePresence(channel, record);
    if (record.vnode != kNone) {
      writeCameraType(channel, record);
      if (record.profile != kNone) newly_named[i] = restoreLinks(channel, record);
    }
    if (record.slot_switch == 0 || record.slot_switch == 1) slot_switch = record.slot_switch;
    channel.set(keys::slot_switch, slot_switch);
  }
  if (config.save()) return true;
  takeBackLinks(newly_named, records);
  return false;
}

}  // namespace usbdev
