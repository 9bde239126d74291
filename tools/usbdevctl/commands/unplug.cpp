#include <memory>

#include "commands/commands.h"
#include "commands/device.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus unplug(const DeviceOptions &device) {
  const HotplugOutcome outcome = runHotplug(device, false);
  print(device.json ? jsonText(unplugJson(outcome)) : unplugText(outcome));
  return judgeHotplug(outcome, "no channel has a device at this port");
}

}  // namespace

void addUnplug(Program &program) {
  auto device = std::make_shared<DeviceOptions>();
  CLI::App &command = program.addCommand("unplug", "Tell the library that a device was removed; print its channel",
                                         [device] { return unplug(*device); });
  addDeviceOptions(command, *device, false);
}

}  // namespace usbdevctl
