// The device that plug and unplug name on the command line, and its way through the library's hotplug handler.
#pragma once

#include <string>

#include "command.h"
#include "parts/hotplug_report.h"

namespace usbdevctl {

struct DeviceOptions {
  std::string type;
  int node = 0;
  std::string slot;
  std::string name;
  bool json = false;
};

/// The options that plug and unplug share; node and name matter for a plug-in only, which needs them.
void addDeviceOptions(Command &command, DeviceOptions &device, bool plugged);

HotplugOutcome runHotplug(const DeviceOptions &device, bool plugged);

/// What the outcome means for the exit status; a device without a channel is explained on standard error.
ExitStatus judgeHotplug(const HotplugOutcome &outcome, const std::string &explanation);

}  // namespace usbdevctl
