// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include <array>
#include <memory>
#include <set>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "output/printable.h"
#include "slot/slots.h"

namespace usbdevctl {

namespace {

using Devices = std::array<_usbdev_entry, USBDEV_CHANNELS>;

/// What the library knows about the slot; false when the configuration cannot be read. A slot that no device is in has
/// no channel.
bool readSlot(const std::string &port, const Devices &devices, Slot &slot) {
  if (vl_get_usbslot_info(port.c_str(), &slot.settings) != 0) return false;
  if (slot.settings.channel == -1) return true;
  slot.device = devices[static_cast<std::size_t>(slot.settings.channel)];
  if (slot.settings.vnode == -1 || slot.settings.slot_switch == 0) return true;  // no picture, which has no codecs
  char codecs[16] = {};
  const bool read = vl_get_usbslot_video_cap(port.c_str(), codecs) == 0;
  slot.codecs = codecs;
  return read;
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

ExitStatus explainRefusal(Camera &camera) {
  const ExitStatus read_again = readAgain(camera);
  if (read_again != ExitStatus::ok) return read_again;
  if (isAttached(camera)) return notStoredFor(camera);
  complain("nothing is attached to switch: " + cameraText(camera));
  return ExitStatus::nothing;
}

std::string switchedText(const ChannelRow &row) {
  const std::string text = row.slot_switch == true ? "switched on" : "switched off";
  return row.parked_behind ? text + ", waits for channel " + std::to_string(*row.parked_behind) : text;
}

ExitStatus switchSlot(const CameraOptions &options, bool on) {
  Camera camera;
  const ExitStatus found = findCamera(options.camera.name(), camera);
  if (found != ExitStatus::ok) return found;
  if (vl_set_usbslot_switch(camera.row.slot.c_str(), on ? "enable" : "disable", nullptr) != 0) {
    return explainRefusal(camera);
  }
  const ExitStatus read_again = readAgain(camera);
  if (read_again != ExitStatus::ok) return read_again;
  const ChannelRow &row = camera.row;
  if (row.slot_switch != on) return notStoredFor(camera);
  const Fields members =
      Fields().add(forPrograms("slot_switch", row.slot_switch)).add(forPrograms("parked_behind", row.parked_behind));
  print(changeOutput(switchedText(row), members, camera, options.json));
  return ExitStatus::ok;
}

void addList(Command &slot) {
  auto json = std::make_shared<bool>(false);
  Command &command =
      slot.addCommand("list", "Show the ports with devices and what they offer", [json] { return list(*json); });
  addJsonFlag(command, *json);
}

void addSwitch(Command &slot, const char *name, const char *description, bool on) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::channel);
  Command &command = slot.addCommand(name, description, [options, on] { return switchSlot(*options, on); });
  addCameraOptions(command, *options);
}

}  // namespace

void addSlot(Command &program) {
  Command &slot = program.addCommand("slot", "Show the USB ports with devices, or switch one on or off");
  addList(slot);
  addSwitch(slot, "on", "Switch a port on", true);
  addSwitch(slot, "off", "Switch a port off; its device keeps its channel", false);
}

}  // namespace usbdevctl
