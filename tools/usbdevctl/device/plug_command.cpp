#include <memory>

#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "device/device.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus plug(const DeviceOptions &device) {
  HotplugOutcome outcome;
  const ExitStatus status = runHotplug(device, true, outcome);
  if (status == ExitStatus::failure) return status;
  Camera other;
  other.channel = outcome.conflict.channel;
  if (other.channel >= 0) readAgain(other);
  print(recordOutput(plugReport(outcome, other), device.json));
  return status;
}

}  // namespace

void addPlug(Command &program) {
  auto device = std::make_shared<DeviceOptions>();
  Command &command = program.addCommand("plug", "Tell the library that a device was attached; print its channel",
                                        [device] { return plug(*device); });
  addDeviceOptions(command, *device, true);
}

}  // namespace usbdevctl
