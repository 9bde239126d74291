#include "devices/identification.h"

#include <usbdev/devices.h>

#include "core/lines.h"
#include "core/text.h"

namespace usbdev {

bool takeAttribute(char *line, const char *attribute, char (&value)[kShortCodeSize]) {
  if (!contains(line, attribute)) return false;
  const Pair sides = splitPair(line, "==");
  if (sides) copyText(value, sides.right);
  return static_cast<bool>(sides);
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

}  // namespace usbdev

using usbdev::contains;

int find_pidvid(const _usbdev_des *device, char *pidvid) {
  if (device == nullptr || pidvid == nullptr || !usbdev::isTerminated(device->usbslot)) return 0;
  char marker[160];
  usbdev::formatText(marker, "KERNELS==\"%s\"", device->usbslot);

  char vendor[usbdev::kShortCodeSize] = "";
  char product[usbdev::kShortCodeSize] = "";
  bool has_vendor = false;
  bool has_product = false;
  bool in_block = false;
  usbdev::CommandLines walk("/sbin/udevadm info --name=/dev/video%d --attribute-walk", device->node);
  char line[256];
  while (!(has_vendor && has_product) && walk.next(line)) {
    in_block = in_block || contains(line, marker);
    if (!in_block) continue;
    if (contains(line, "looking")) break;
    has_vendor = has_vendor || usbdev::takeAttribute(line, "ATTRS{idVendor}", vendor);
    has_product = has_product || usbdev::takeAttribute(line, "ATTRS{idProduct}", product);
  }
  if (!has_vendor && !has_product) return 0;
  char both[usbdev::kShortCodeSize];
  usbdev::formatText(both, "%s:%s", vendor, product);
  usbdev::copyCut(pidvid, both, sizeof both - 1);
  return 1;
}

int get_fetypeid(const _usbdev_des *device, char *fetype) {
  char pidvid[usbdev::kShortCodeSize];
  if (fetype == nullptr || find_pidvid(device, pidvid) != 1) return -1;
  usbdev::FileLines table("/etc/config/.usbFECam.dat");
  char line[256];
  while (table.next(line)) {
    if (!contains(line, pidvid)) continue;
    const usbdev::Pair entry = usbdev::splitPair(line, "=");
    if (!entry) return -1;
    usbdev::copyCut(fetype, entry.right, usbdev::kShortCodeSize - 1);
    return 1;
  }
  return -1;
}

int isPCIbridge(int vnode) {
  usbdev::CommandLines classes("/sbin/udevadm info -a -n /dev/video%d | grep '{class}'", vnode);
  return classes.skipTo("0x06") ? 1 : 0;  // the PCI base class of bridges
}

int get_pcibridgePath(int vnode, char *path) {
  if (path == nullptr) return 0;
  usbdev::CommandLines device("/sbin/udevadm info -a -n /dev/video%d | grep 'looking at device'", vnode);
  char line[usbdev::kBridgePathSize];
  if (!device.next(line)) return 0;
  const char *devices = std::strstr(line, "devices");
  const char *usb = std::strstr(line, "usb");
  if (devices == nullptr || devices == line || usb == nullptr || usb <= devices) return 0;
  usbdev::copyCut(path, devices - 1, static_cast<std::size_t>(usb - devices));
  return 1;
}

int get_switch_state(void *config, const char *usbslot) {
  if (config == nullptr || usbslot == nullptr) return 1;
  return usbdev::storedSwitch(usbdev::OpenConfig(config), usbslot);
}

int devlistcmp(const char *devname, const char *listfile) {
  if (devname == nullptr || listfile == nullptr) return 0;
  // The no-support list names whole products; any other list holds parts of names.
  const bool whole_name = usbdev::isSame(listfile, usbdev::kNoSupportList);
  usbdev::FileLines list(listfile);
  char line[256];
  while (list.next(line)) {
    usbdev::cutAtLineFeed(line);
    if (whole_name ? usbdev::isSame(devname, line) : contains(devname, line)) return 1;
  }
  return 0;
}
