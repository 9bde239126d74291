// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The arguments that are the same in every command that has them.
#pragma once

#include "command_line/command.h"

namespace usbdevctl {

/// A profile id, 0 to 3.
void addProfile(Command &command, int &profile);

/// The flag that every command with something to print has.
void addJsonFlag(Command &command, bool &json);

}  // namespace usbdevctl
