// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/identification.h"

#include <cstring>

#include "core/lines.h"
#include "core/text.h"

namespace usbdev {

bool findProductIds(int vnode, const char *usbslot, char (&pidvid)[kShortCodeSize]) {
  char marker[160];
  formatText(marker, "KERNELS==\"%s\"", usbslot);
  ProductIds ids;
  bool in_block = false;
  DeviceWalk walk(vnode);
  char line[256];
  // Only the device of the port counts, not the hubs above it.
  while (!ids.areComplete() && walk.next(line)) {
    in_block = in_block || contains(line, marker);
    if (!in_block) continue;
    if (contains(line, "looking")) break;
    ids.takeFirst(line);
  }
  // Intended: One id is enough.
  if (!ids.has_vendor && !ids.has_product) return false;
  formatText(pidvid, "%s:%s", ids.vendor, ids.product);
  return true;
}

bool findCameraType(int vnode, const char *usbslot, char (&fetype)[kShortCodeSize]) {
  char pidvid[kShortCodeSize];
  if (!findProductIds(vnode, usbslot, pidvid)) return false;
  FileLines table("/etc/config/.usbFECam.dat");
  char line[256];
  while (table.next(line)) {
    if (!contains(line, pidvid)) continue;
    const Pair entry = splitPair(line, "=");
    if (entry) copyText(fetype, entry.right);
    return static_cast<bool>(entry);
  }
  return false;
}

bool isBehindPciBridge(int vnode) {
  CommandLines classes("/sbin/udevadm info -a -n /dev/video%d | grep '{class}'", vnode);
  return classes.skipTo("0x06");  // the PCI base class of bridges
}

bool findPciBridge(int vnode, char (&path)[kBridgePathSize]) {
  CommandLines device("/sbin/udevadm info -a -n /dev/video%d | grep 'looking at device'", vnode);
  char line[kBridgePathSize];
  if (!device.next(line)) return false;
  const char *devices = std::strstr(line, "devices");
  const char *usb = std::strstr(line, "usb");
  if (devices == nullptr || devices == line || usb == nullptr || usb <= devices) return false;
  copyCut(path, devices - 1, static_cast<std::size_t>(usb - devices));
  return true;
}

int storedSwitch(const OpenConfig &config, const char *usbslot) {
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    char stored_slot[128];
    channel.get(keys::usbslot, stored_slot);
    const int slot_switch = channel.get(keys::slot_switch);
    if (slot_switch != -1 && isSame(stored_slot, usbslot)) return slot_switch;
  }
  return 1;
}

bool isListed(const char *devname, const char *listfile) {
  // Intended: The path of the list decides how names match.
  const bool whole_name = isSame(listfile, kNoSupportList);
  FileLines list(listfile);
  char line[256];
  while (list.next(line)) {
    cutAtLineFeed(line);
    if (whole_name ? isSame(devname, line) : contains(devname, line)) return true;
  }
  return false;
}

}  // namespace usbdev
