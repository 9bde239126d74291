// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Declares the function that adds each command, so that no command file needs a header of its own.
#pragma once

#include "command_line/command.h"

namespace usbdevctl {

#define USBDEVCTL_COMMAND(name) void name(Command &program);
#define USBDEVCTL_GROUP(heading)
#include "command_line/commands.def"
#undef USBDEVCTL_GROUP
#undef USBDEVCTL_COMMAND

}  // namespace usbdevctl
