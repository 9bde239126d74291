#include "device/device.h"

#include <usbdev/hotplug.h>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "device/device_channel.h"
#include "device/hotplug_lock.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr char kCamera[] = "camera";
constexpr char kAudio[] = "audio";

template <std::size_t Size>
void copyCut(const std::string &text, char (&field)[Size]) {
  field[text.copy(field, Size - 1)] = '\0';
}

_usbdev_des descriptorOf(const DeviceOptions &device, bool plugged) {
  _usbdev_des descriptor = {};
  descriptor.devtype = device.type == kCamera ? 1 : 0;
  descriptor.node = device.node;
  descriptor.plugged = plugged ? 1 : 0;
  copyCut(device.slot, descriptor.usbslot);
  copyCut(device.name, descriptor.devname);
  return descriptor;
}

/// The library's answer is the same for a device without a channel and for a channel that it could not store.
ExitStatus explainNoChannel(const _usbdev_des &device) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  if (hasChannel(rows, device)) {
    complain("the channel of this device could not be stored");
    return ExitStatus::failure;
  }
  complain(device.plugged != 0 ? "no channel takes this device" : "no channel has a device at this port");
  return ExitStatus::nothing;
}

}  // namespace

void addDeviceOptions(Command &command, DeviceOptions &device, bool plugged) {
  command.add("--type", &device.type, "Kind of device").require().allow({kCamera, kAudio});
  command.add("--node", &device.node, "N of /dev/videoN, or the number of the sound card").require(plugged).limit(0);
  addPort(command, device.slot, "--slot").require();
  command.add("--name", &device.name, "Product name, cut at 255 bytes").require(plugged);
  addJsonFlag(command, device.json);
}

ExitStatus runHotplug(const DeviceOptions &device, bool plugged, HotplugOutcome &outcome) {
  const HotplugLock lock(kHotplugLockFile);
  if (!lock.error().empty()) {
    complain(lock.error());
    return ExitStatus::failure;
  }
  _usbdev_des descriptor = descriptorOf(device, plugged);
  outcome.channel =
      mn_set_usbdev_hotplug(&descriptor, &outcome.profile, outcome.device, &outcome.video_node, &outcome.conflict);
  return outcome.channel >= 0 ? ExitStatus::ok : explainNoChannel(descriptor);
}

}  // namespace usbdevctl
