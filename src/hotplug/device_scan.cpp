#include "hotplug/device_scan.h"

#include <usbdev/hotplug.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "core/config.h"
#include "core/lines.h"
#include "core/text.h"
#include "hotplug/audio_attachment.h"

namespace usbdev {
namespace {

/// A channel as the scans compare it with a device.
struct Known {
  int exists;
  int conflictch;
  char usbslot[128];
  char devname[256];
};

/// A device that the drivers list.
struct Found {
  int node;
  char usbslot[128];
  char name[256];
};

void readKnown(const ConfigReader &config, Known (&known)[kChannels]) {
  for (int i = 0; i < kChannels; ++i) {
    const Section &section = config.channel(i);
    known[i].exists = section.get(keys::exists, -1);  // -1: never configured
    known[i].conflictch = section.get(keys::conflictch);
    section.get(keys::usbslot, known[i].usbslot);
    section.get(keys::devname, known[i].devname);
  }
}

/// Takes the next interface that has a node from a driver's list; false at the end of the list.
bool nextDevice(CommandLines &interfaces, int (*get_info)(const char *, int *, char *), Found &device) {
  char line[256];
  while (interfaces.next(line)) {
    cutAtLineFeed(line);
    device.node = kNone;
    device.name[0] = '\0';
    if (get_info(line, &device.node, device.name) != 0 || device.node == kNone) continue;
    copyCut(device.usbslot, line, std::strcspn(line, ":"));  // fits: the interface of a longer port has no node
    return true;
  }
  return false;
}

void markConfigured(const Known (&known)[kChannels], _usbdev_update *channels) {
  for (int i = 0; i < kChannels; ++i) {
    if (known[i].exists != -1) channels[i].state = 1;
  }
}

/// The conflict recomputation's code for a channel whose camera is present.
int presentCode(const Known &channel, bool may_encode) {
  if (channel.exists == 0) return 1;
  if (channel.conflictch == kUnsupported) return may_encode ? 0 : kUnsupported;
  return 1;
}

/// Gives a camera to the first channel that knows it; false when none does.
bool placeCamera(const Found &camera, const Known (&known)[kChannels], bool may_encode, _usbdev_update *channels,
                 int *conflict_map) {
  bool placed = false;
  for (int i = 0; i < kChannels; ++i) {
    if (!isSame(known[i].usbslot, camera.usbslot)) continue;
    if (placed || !isSame(known[i].devname, camera.name)) {
      channels[i].vnode = kNone;
      if (known[i].exists == 1) conflict_map[i] = 0;
      continue;
    }
    placed = true;
    channels[i].vnode = camera.node;
    copyText(channels[i].usbslot, camera.usbslot);
    copyText(channels[i].devname, camera.name);
    conflict_map[i] = presentCode(known[i], may_encode);
  }
  return placed;
}

/// The camera in a card's port names the card too.
const char *nameOfCard(const Found &card, const _usbdev_update *channels, int new_camera_count,
                       const _usbdev_update *new_cameras) {
  for (int i = 0; i < kChannels; ++i) {
    if (isSame(channels[i].usbslot, card.usbslot)) return channels[i].devname;
  }
  for (int i = 0; i < std::min(new_camera_count, kNewDevices); ++i) {
    if (isSame(new_cameras[i].usbslot, card.usbslot)) return new_cameras[i].devname;
  }
  return card.name;
}

/// Takes a card away from the channels, as audio attachment is off; true when a channel knows it.
bool placeCard(const Found &card, const char *name, const Known (&known)[kChannels], _usbdev_update *channels) {
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

/// Appends a device to a list of new ones; null when the list is full.
_usbdev_update *append(int &count, _usbdev_update *list, const Found &device, const char *name) {
  if (count < 0 || count >= kNewDevices) return nullptr;
  _usbdev_update &record = list[count++];
  copyText(record.usbslot, device.usbslot);
  copyText(record.devname, name);
  record.state = 1;
  return &record;
}

}  // namespace

// The scans hold the lock while their commands run, so that no channel changes between two lines of a list.

int findCameras(HostAnswers &host, _usbdev_update *channels, int *conflict_map, int *new_camera_count,
                _usbdev_update *new_cameras) {
  const ReaderOverCommands config;
  if (!config) return -1;
  CommandLines interfaces("/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'");
  if (!interfaces) {
    std::fputs("cannot find video list ...\n", stderr);
    return 0;
  }
  const bool may_encode = host.mayEncode();
  Known known[kChannels];
  readKnown(config, known);
  Found camera;
  while (nextDevice(interfaces, get_video_info, camera)) {
    markConfigured(known, channels);
    if (placeCamera(camera, known, may_encode, channels, conflict_map)) continue;
    _usbdev_update *record = append(*new_camera_count, new_cameras, camera, camera.name);
    if (record != nullptr) record->vnode = camera.node;
  }
  return 0;
}

}  // namespace usbdev

using namespace usbdev;

int get_conf_chinfo(_usbdev_update *channels, int *conflict_map, int *new_camera_count, _usbdev_update *new_cameras) {
  if (channels == nullptr || conflict_map == nullptr || new_camera_count == nullptr || new_cameras == nullptr) {
    return -1;
  }
  HostAnswers host;
  return findCameras(host, channels, conflict_map, new_camera_count, new_cameras);
}

// NOLINTNEXTLINE(readability-non-const-parameter): the interface is older than what is left to do here
int get_conf_audioinfo(_usbdev_update *channels, int *conflict_map, int *new_card_count, _usbdev_update *new_cards,
                       int new_camera_count, const _usbdev_update *new_cameras) {
  if (channels == nullptr || conflict_map == nullptr || new_card_count == nullptr || new_cards == nullptr ||
      (new_cameras == nullptr && new_camera_count > 0)) {
    return -1;
  }
  const ReaderOverCommands config;
  if (!config) return -1;
  CommandLines interfaces("/bin/ls /sys/bus/usb/drivers/snd-usb-audio | grep \\: | /bin/awk '{print $1}'");
  if (!interfaces) {
    std::fputs("cannot find audio list ...\n", stderr);
    return 0;
  }
  Known known[kChannels];
  readKnown(config, known);
  Found card;
  while (nextDevice(interfaces, get_audio_info, card)) {
    markConfigured(known, channels);
    const char *name = nameOfCard(card, channels, new_camera_count, new_cameras);
    if (placeCard(card, name, known, channels) || isIgnoredCardName(card.name)) continue;
    _usbdev_update *record = append(*new_card_count, new_cards, card, name);
    if (record != nullptr) record->anode = card.node;
  }
  return 0;
}
