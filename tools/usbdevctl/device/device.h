// The device that plug and unplug name on the command line, and its way through the library's hotplug handler.
#pragma once

#include <string>

#include "command_line/command.h"
#include "device/hotplug_report.h"

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

/// Passes the device to the library, one at a time over the whole host. A device without a channel is explained on
/// standard error.
ExitStatus runHotplug(const DeviceOptions &device, bool plugged, HotplugOutcome &outcome);

}  // namespace usbdevctl
