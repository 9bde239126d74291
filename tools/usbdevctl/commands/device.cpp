#include "commands/device.h"

#include <usbdev/hotplug.h>

#include "commands/configuration.h"
#include "commands/shared_arguments.h"

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

}  // namespace

void addDeviceOptions(Command &command, DeviceOptions &device, bool plugged) {
  command.add("--type", &device.type, "Kind of device").require().allow({kCamera, kAudio});
  command.add("--node", &device.node, "N of /dev/videoN, or the number of the sound card").require(plugged).limit(0);
  addPort(command, device.slot, "--slot").require();
  command.add("--name", &device.name, "Product name, cut at 255 bytes").require(plugged);
  addJsonFlag(command, device.json);
}

HotplugOutcome runHotplug(const DeviceOptions &device, bool plugged) {
  _usbdev_des descriptor = descriptorOf(device, plugged);
  HotplugOutcome outcome;
  outcome.channel =
      mn_set_usbdev_hotplug(&descriptor, &outcome.profile, outcome.device, &outcome.video_node, &outcome.conflict);
  return outcome;
}

ExitStatus judgeHotplug(const HotplugOutcome &outcome, const std::string &explanation) {
  return outcome.channel >= 0 ? ExitStatus::ok : nothingApplies(explanation);
}

}  // namespace usbdevctl
