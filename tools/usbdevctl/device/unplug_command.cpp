#include <memory>

#include "command_line/commands.h"
#include "device/device.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus unplug(const DeviceOptions &device) {
  HotplugOutcome outcome;
  const ExitStatus status = runHotplug(device, false, outcome);
  if (status != ExitStatus::failure) print(recordOutput(unplugReport(outcome), device.json));
  return status;
}

}  // namespace

void addUnplug(Command &program) {
  auto device = std::make_shared<DeviceOptions>();
  Command &command = program.addCommand("unplug", "Tell the library that a device was removed; print its channel",
                                        [device] { return unplug(*device); });
  addDeviceOptions(command, *device, false);
}

}  // namespace usbdevctl
