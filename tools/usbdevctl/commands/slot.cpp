#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include <array>
#include <memory>
#include <set>

#include "commands/cameras.h"
#include "commands/commands.h"
#include "commands/configuration.h"
#include "commands/shared_arguments.h"
#include "output/output.h"
#include "output/printable.h"
#include "parts/slots.h"

namespace usbdevctl {

namespace {

struct Options {
  CameraArgument camera{CameraName::By::channel};
  bool json = false;
};

using Devices = std::array<_usbdev_entry, USBDEV_CHANNELS>;

/// What the library knows about the slot; false when the configuration cannot be read. A slot that no device is in has
/// no channel.
bool readSlot(const std::string &port, const Devices &devices, Slot &slot) {
  if (vl_get_usbslot_info(port.c_str(), &slot.settings) != 0) return false;
  if (slot.settings.channel == -1) return true;
  slot.device = devices[static_cast<std::size_t>(slot.settings.channel)];
  char codecs[16] = {};
  vl_get_usbslot_video_cap(port.c_str(), codecs);  // fails where there is no picture, which then has no codecs
  slot.codecs = codecs;
  return true;
}

bool readSlots(FieldRows &rows) {
  Devices devices = {};
  if (vl_get_devpf_list(devices.data()) != 0) return false;
  std::set<std::string> seen;  // a camera that was displaced shares its slot with the one in its place
  for (const _usbdev_entry &device : devices) {
    const std::string port = fieldText(device.usbslot);
    if (device.exists == 0 || !seen.insert(port).second) continue;
    Slot slot;
    if (!readSlot(port, devices, slot)) return false;
    rows.push_back(slotFields(slot));
  }
  return true;
}

ExitStatus list(bool json) {
  FieldRows rows;
  if (!readSlots(rows)) return configurationUnreadable();
  print(listOutput("slots", rows, json));
  if (!rows.empty()) return ExitStatus::ok;
  complain("no USB port has a device");
  return ExitStatus::nothing;
}

ExitStatus switchSlot(const Options &options, bool on) {
  std::string port;
  const ExitStatus found = findPort(options.camera.name(), port);
  if (found != ExitStatus::ok) return found;
  if (vl_set_usbslot_switch(port.c_str(), on ? "enable" : "disable", nullptr) != 0) {
    return nothingApplies("no device is in port " + printable(port));
  }
  Devices devices = {};
  Slot slot;
  if (vl_get_devpf_list(devices.data()) != 0 || !readSlot(port, devices, slot)) return configurationUnreadable();
  print(recordOutput(switchedFields(slot), options.json));
  return ExitStatus::ok;
}

void addList(Command &slot) {
  auto json = std::make_shared<bool>(false);
  Command &command =
      slot.addCommand("list", "Show the ports with devices and what they offer", [json] { return list(*json); });
  addJsonFlag(command, *json);
}

void addSwitch(Command &slot, const char *name, const char *description, bool on) {
  auto options = std::make_shared<Options>();
  Command &command = slot.addCommand(name, description, [options, on] { return switchSlot(*options, on); });
  addCamera(command, options->camera);
  addJsonFlag(command, options->json);
}

}  // namespace

void addSlot(Command &program) {
  Command &slot = program.addCommand("slot", "Show the USB ports with devices, or switch one on or off");
  addList(slot);
  addSwitch(slot, "on", "Switch a port on", true);
  addSwitch(slot, "off", "Switch a port off; its device keeps its channel", false);
}

}  // namespace usbdevctl
