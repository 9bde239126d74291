// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include <memory>

#include "channel/configuration.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"
#include "profile/availability.h"

namespace usbdevctl {

namespace {

bool readAvailability(Availability &available) {
  char profiles[16] = {};  // the library writes no end
  if (vl_get_available_profile(profiles) != 0) return false;
  available.profiles = profiles;
  return vl_get_available_dev(available.channels.data()) == 0;
}

ExitStatus free(bool json) {
  Availability available;
  if (!readAvailability(available)) return configurationUnreadable();
  print(json ? availabilityJson(available).text() : availabilityText(available, outputTakesColour(), outputWidth()));
  if (canAssign(available)) return ExitStatus::ok;
  complain(available.profiles.empty() ? "every profile has a camera" : "no device waits for a profile");
  return ExitStatus::nothing;
}

}  // namespace

void addFree(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command = program.addCommand("free", "Show the profiles that are free and the devices that can get one",
                                        [json] { return free(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
