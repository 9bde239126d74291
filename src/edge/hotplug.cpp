// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hotplug.h>

#include "core/text.h"
#include "devices/conflicts.h"
#include "hotplug/channel_setters.h"
#include "hotplug/channel_update.h"
#include "hotplug/codec_check.h"
#include "hotplug/device_scan.h"
#include "hotplug/handler.h"
#include "hotplug/node_readers.h"
#include "hotplug/synchronisation.h"

namespace {

/// A caller's records of the ten channels.
usbdev::ChannelRecords &all(_usbdev_update *channels) { return *reinterpret_cast<usbdev::ChannelRecords *>(channels); }

}  // namespace

int mn_set_usbdev_hotplug(_usbdev_des *device, int *profile, char *devname, int *vnode, _usbdev_conflict *conflict) {
  if (device == nullptr || profile == nullptr || devname == nullptr || vnode == nullptr || conflict == nullptr ||
      !usbdev::isTerminated(device->usbslot)) {
    return -1;
  }
  device->devname[sizeof device->devname - 1] = '\0';
  usbdev::HostAnswers host;
  return usbdev::handleHotplug(host, *device, *profile, {devname, sizeof device->devname}, *vnode, *conflict);
}

int vl_set_devpf_list(void) {
  usbdev::startUp();
  return 0;
}

int check_halvane(void) {
  usbdev::HostAnswers host;
  return usbdev::checkCodecs(host) ? 0 : -1;
}

int mn_sync_usbdev_conf(void) {
  usbdev::HostAnswers host;
  // Intended: Success is 1.
  return usbdev::synchronise(host) ? 1 : -1;
}

int get_conf_chinfo(_usbdev_update *channels, int *conflict_map, int *new_camera_count, _usbdev_update *new_cameras) {
  if (channels == nullptr || conflict_map == nullptr || new_camera_count == nullptr || new_cameras == nullptr) {
    return -1;
  }
  usbdev::HostAnswers host;
  usbdev::ConflictTasks tasks;
  usbdev::takeTaskCodes(conflict_map, tasks);
  usbdev::NewDevices cameras(new_cameras, *new_camera_count);
  const bool done = usbdev::findCameras(host, all(channels), tasks, cameras);
  usbdev::giveTaskCodes(tasks, conflict_map);
  *new_camera_count = cameras.count();
  return done ? 0 : -1;
}

// NOLINTNEXTLINE(readability-non-const-parameter): the interface is older than what is left to do here
int get_conf_audioinfo(_usbdev_update *channels, int *conflict_map, int *new_card_count, _usbdev_update *new_cards,
                       int new_camera_count, const _usbdev_update *new_cameras) {
  if (channels == nullptr || conflict_map == nullptr || new_card_count == nullptr || new_cards == nullptr ||
      (new_cameras == nullptr && new_camera_count > 0)) {
    return -1;
  }
  usbdev::NewDevices cards(new_cards, *new_card_count);
  const bool done = usbdev::findSoundCards(all(channels), cards, {new_cameras, new_camera_count});
  *new_card_count = cards.count();
  return done ? 0 : -1;
}

int update_usbinfo(_usbdev_update *channels) {
  if (channels == nullptr) return -1;
  return usbdev::updateChannels(all(channels)) ? 0 : -1;
}

int sync_usbdev(int new_camera_count, _usbdev_update *new_cameras, int new_card_count, _usbdev_update *new_cards) {
  if ((new_cameras == nullptr && new_camera_count > 0) || (new_cards == nullptr && new_card_count > 0)) return 0;
  usbdev::HostAnswers host;
  usbdev::plugNewDevices(host, {new_cameras, new_camera_count}, {new_cards, new_card_count});
  return 0;
}

int rmNone1stProfile(_usbdev_update *channels) {
  if (channels != nullptr) usbdev::clearLaterProfiles(all(channels));
  return 0;
}

int get_video_info(const char *interface_name, int *vnode, char *name) {
  if (interface_name == nullptr || vnode == nullptr || name == nullptr) return -1;
  const usbdev::NodeAnswer answer = usbdev::readCamera(interface_name, *vnode, {name, 256});
  return answer == usbdev::NodeAnswer::unreadable ? -1 : 0;
}

int get_audio_info(const char *interface_name, int *card, char *name) {
  if (interface_name == nullptr || card == nullptr || name == nullptr) return -1;
  const usbdev::NodeAnswer answer = usbdev::readSoundCard(interface_name, *card, {name, 256});
  return answer == usbdev::NodeAnswer::unreadable ? -1 : 0;
}

int get_usb_vnode(_usbdev_update *record) {
  if (record != nullptr && usbdev::isTerminated(record->usbslot)) usbdev::readCameraInPort(*record);
  return 0;
}

int get_usb_anode(_usbdev_update *record) {
  if (record != nullptr && usbdev::isTerminated(record->usbslot)) usbdev::readSoundCardInPort(*record);
  return 0;
}

int mn_set_usbchn_sps(int profile, int value) { return usbdev::storeSpsState(profile, value) ? 0 : -1; }

int mn_set_usbdev_volume(int profile) { return usbdev::applyStoredVolume(profile); }
