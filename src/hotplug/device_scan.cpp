#include "hotplug/device_scan.h"

#include <cstdio>
#include <cstring>

#include "core/channel_snapshot.h"
#include "core/lines.h"
#include "hotplug/audio_attachment.h"
#include "hotplug/node_readers.h"

namespace usbdev {
namespace {

/// A device that the drivers list.
struct Found {
  int node;
  char usbslot[128];
  char name[256];
};

/// Takes the next interface that has a node from a driver's list; false at the end of the list.
bool nextDevice(CommandLines &interfaces, NodeAnswer (*read)(const char *, int &, TextBuffer), Found &device) {
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

/// Assigns a camera to the first channel that knows it; false when none does.
bool placeCamera(const Found &camera, const ChannelSnapshots &known, bool may_encode, ChannelRecords &channels,
                 ConflictTasks &tasks) {
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

/// A card has the name of the camera in its port.
const char *nameOfCard(const Found &card, const ChannelRecords &channels, const RecordList &new_cameras) {
  if (const char *known = RecordList(channels, kChannels).nameInPort(card.usbslot)) return known;
  if (const char *found = new_cameras.nameInPort(card.usbslot)) return found;
  return card.name;
}

/// Takes a card away from the channels, as audio attachment is off; true when a channel knows it.
bool placeCard(const Found &card, const char *name, const ChannelSnapshots &known, ChannelRecords &channels) {
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
  Found camera;
  while (nextDevice(interfaces, readCamera, camera)) {
    markConfigured(known, channels);
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
  Found card;
  while (nextDevice(interfaces, readSoundCard, card)) {
    markConfigured(known, channels);
    const char *name = nameOfCard(card, channels, new_cameras);
    if (placeCard(card, name, known, channels) || isIgnoredCardName(card.name)) continue;
    _usbdev_update *record = new_cards.append(card.usbslot, name);
    if (record != nullptr) record->anode = card.node;
  }
  return true;
}

}  // namespace usbdev
