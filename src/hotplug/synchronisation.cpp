// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/synchronisation.h"

#include <algorithm>

#include "core/change_notification.h"
#include "core/channel_snapshot.h"
#include "core/config.h"
#include "core/text.h"
#include "devices/conflicts.h"
#include "hotplug/channel_update.h"
#include "hotplug/codec_check.h"
#include "hotplug/device_scan.h"
#include "hotplug/device_type.h"
#include "hotplug/handler.h"
#include "profiles/assignment.h"

namespace usbdev {
namespace {

/// A channel as it is stored, before any device is found.
_usbdev_update recordOf(const ChannelSnapshot &stored) {
  _usbdev_update record{};
  record.vnode = record.anode = kNone;
  record.state = stored.exists;
  record.slot_switch = stored.slot_switch;
  record.profile = stored.profile;
  copyText(record.hlspath, stored.hlspath);
  copyText(record.hash, stored.share_link);
  return record;
}

bool readRecords(ChannelRecords &records) {
  const ConfigReader config;
  if (!config) return false;
  ChannelSnapshots stored;
  readForStartUp(config, stored);
  for (int i = 0; i < kChannels; ++i) records[i] = recordOf(stored[i]);
  return true;
}

void plug(HostAnswers &host, DeviceType type, int node, const char *usbslot, const char *name) {
  _usbdev_des device{};
  device.devtype = static_cast<int>(type);
  device.node = node;
  copyText(device.usbslot, usbslot);
  device.plugged = 1;
  copyText(device.devname, name);
  int profile = kNone;
  char devname[sizeof device.devname];
  int vnode = kNone;
  _usbdev_conflict conflict;
  handleHotplug(host, device, profile, devname, vnode, conflict);
}

/// A card without a name of its own takes that of the new camera in its port.
const char *nameOfCard(const _usbdev_update &card, const RecordList &cameras) {
  const char *camera = card.devname[0] == '\0' ? cameras.nameInPort(card.usbslot) : nullptr;
  return camera != nullptr ? camera : card.devname;
}

/// Does a host that is limited to one channel clear this channel's profile?
bool holdsLaterProfile(const _usbdev_update &record) {
  return record.state != kNeverConfigured && record.profile != kNone && record.profile != 0;
}

}  // namespace

bool synchronise(HostAnswers &host) {
  ChannelRecords channels;
  if (!readRecords(channels)) return false;
  ConflictTasks conflict_tasks;
  std::fill_n(conflict_tasks, kChannels, ConflictTask::leave);
  _usbdev_update camera_list[kNewDevices];
  _usbdev_update card_list[kNewDevices];
  NewDevices cameras(camera_list, 0);
  NewDevices cards(card_list, 0);
  // Intended: A failed step does not stop the others.
  findCameras(host, channels, conflict_tasks, cameras);
  findSoundCards(channels, cards, cameras.records());
  updateChannels(channels);
  recomputeConflicts(host, conflict_tasks);
  plugNewDevices(host, cameras.records(), cards.records());
  if (std::any_of(channels, channels + kChannels, holdsLaterProfile) && host.isOneChannelLimited()) {
    clearLaterProfiles(channels);
  }
  return true;
}

void startUp() {
  HostAnswers host;
  checkCodecs(host);
  synchronise(host);
}

void plugNewDevices(HostAnswers &host, const RecordList &cameras, const RecordList &cards) {
  for (const _usbdev_update &camera : cameras) {
    plug(host, DeviceType::camera, camera.vnode, camera.usbslot, camera.devname);
  }
  for (const _usbdev_update &card : cards) {
    plug(host, DeviceType::sound_card, card.anode, card.usbslot, nameOfCard(card, cameras));
  }
}

void clearLaterProfiles(const ChannelRecords &channels) {
  for (const _usbdev_update &channel : channels) {
    if (holdsLaterProfile(channel)) clearProfile(channel.profile, nullptr, EventCode::one_channel_host);
  }
}

}  // namespace usbdev
