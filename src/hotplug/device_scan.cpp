// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/device_scan.h"

#include <cstdio>
#include <cstring>

#include "core/channel_snapshot.h"
#include "core/lines.h"
#include "core/text.h"
#include "hotplug/audio_attachment.h"
#include "hotplug/device_placement.h"
#include "hotplug/node_readers.h"

namespace usbdev {
namespace {

/// Takes the next interface that has a node from a driver's list; false at the end of the list.
bool nextDevice(CommandLines &interfaces, NodeAnswer (*read)(const char *, int &, TextBuffer), FoundDevice &device) {
  char line[256];
  while (interfaces.next(line)) {
    cutAtLineFeed(line);
    device.name[0] = '\0';
    if (read(line, device.node, TextBuffer(device.name)) != NodeAnswer::found) continue;
    copyCut(device.usbslot, line, std::strcspn(line, ":"));  // fits: the interface of a longer port has no node
    return true;
  }
  return false;
}

}  // namespace

// The scans hold the lock while their commands run, so that no channel changes between two lines of a list.

bool findCameras(HostAnswers &host, ChannelRecords &channels, ConflictTasks &tasks, NewDevices &new_cameras) {
  const ReaderOverCommands config;
  if (!config) return false;
  CommandLines interfaces("/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'");
  if (!interfaces) {
    std::fputs("cannot find video list ...\n", stderr);
    return true;
  }
  const bool may_encode = host.mayEncode();
  ChannelSnapshots known;
  readForScan(config, known);
  FoundDevice camera;
  while (nextDevice(interfaces, readCamera, camera)) {
    if (placeCamera(camera, known, may_encode, channels, tasks)) continue;
    _usbdev_update *record = new_cameras.append(camera.usbslot, camera.name);
    if (record != nullptr) record->vnode = camera.node;
  }
  return true;
}

bool findSoundCards(ChannelRecords &channels, NewDevices &new_cards, const RecordList &new_cameras) {
  const ReaderOverCommands config;
  if (!config) return false;
  CommandLines interfaces("/bin/ls /sys/bus/usb/drivers/snd-usb-audio | grep \\: | /bin/awk '{print $1}'");
  if (!interfaces) {
    std::fputs("cannot find audio list ...\n", stderr);
    return true;
  }
  ChannelSnapshots known;
  readForScan(config, known);
  FoundDevice card;
  while (nextDevice(interfaces, readSoundCard, card)) {
    const char *name = nameOfCard(card, channels, new_cameras);
    if (placeCard(card, name, known, channels) || isIgnoredCardName(card.name)) continue;
    _usbdev_update *record = new_cards.append(card.usbslot, name);
    if (record != nullptr) record->anode = card.node;
  }
  return true;
}

}  // namespace usbdev
