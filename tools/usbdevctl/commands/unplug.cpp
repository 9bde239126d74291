#include <memory>

#include "commands/commands.h"
#include "commands/device.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus unplug(const DeviceOptions &device) {
  const HotplugOutcome outcome = runHotplug(device, false);
  print(recordOutput(unplugReport(outcome), device.json));
  return judgeHotplug(outcome, "no channel has a device at this port");
}

}  // namespace

void addUnplug(Command &program) {
  auto device = std::make_shared<DeviceOptions>();
  Command &command = program.addCommand("unplug", "Tell the library that a device was removed; print its channel",
                                        [device] { return unplug(*device); });
  addDeviceOptions(command, *device, false);
}

}  // namespace usbdevctl
