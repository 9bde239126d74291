// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/shared_arguments.h"

#include <usbdev/records.h>

namespace usbdevctl {

void addProfile(Command &command, int &profile) {
  command.add("profile", &profile, "Profile, 0 to 3").limit(0, USBDEV_PROFILES - 1);
}

void addJsonFlag(Command &command, bool &json) {
  command.add("--json", &json, "Print JSON for programs instead of text for people");
}

}  // namespace usbdevctl
