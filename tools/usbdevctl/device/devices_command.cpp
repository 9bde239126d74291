// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "channel/troubles.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "device/devices.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

/// Reads the channels only where the machine can have something against their cameras.
bool readTroubles(ChannelRows &channels) {
  const Machine machine;
  if (!machine.isReal()) return true;
  if (!readChannels(channels)) return false;
  addTroubles(channels, machine);
  return true;
}

ExitStatus devices(bool json) {
  std::array<_usbdev_entry, USBDEV_CHANNELS> entries = {};
  if (vl_get_devpf_list(entries.data()) != 0) return configurationUnreadable();
  ChannelRows channels;
  if (!readTroubles(channels)) return configurationUnreadable();
  const FieldRows rows = deviceFields(entries, channels);
  print(listOutput("devices", rows, json));
  if (!rows.empty()) return ExitStatus::ok;
  complain("no channel has a device");
  return ExitStatus::nothing;
}

}  // namespace

void addDevices(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command =
      program.addCommand("devices", "Show the devices of the channels", [json] { return devices(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
