#include "commands/device.h"

#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <array>

#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr char kCamera[] = "camera";
constexpr char kAudio[] = "audio";
constexpr std::size_t kLongestSlot = sizeof(_usbdev_des::usbslot) - 1;

// A slot that is cut would name another port.
std::string checkSlot(const std::string &slot) {
  if (slot.empty()) return "the slot is empty";
  return slot.size() > kLongestSlot ? "the slot is longer than " + std::to_string(kLongestSlot) + " bytes" : "";
}

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

// The handler answers a configuration that it cannot open as it answers a device for which there is no channel.
bool configurationOpens() {
  std::array<_usbdev_entry, USBDEV_CHANNELS> rows = {};
  return vl_get_devpf_list(rows.data()) == 0;
}

}  // namespace

void addDeviceOptions(Command &command, DeviceOptions &device, bool plugged) {
  command.add("--type", &device.type, "Kind of device").require().allow({kCamera, kAudio});
  command.add("--node", &device.node, "N of /dev/videoN, or the number of the sound card").require(plugged).limit(0);
  command.add("--slot", &device.slot, "Kernel name of the USB port, such as 3-1.2").require().check(checkSlot);
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
  if (outcome.channel >= 0) return ExitStatus::ok;
  if (!configurationOpens()) {
    complain("the channel configuration cannot be read");
    return ExitStatus::failure;
  }
  complain(explanation);
  return ExitStatus::nothing;
}

}  // namespace usbdevctl
