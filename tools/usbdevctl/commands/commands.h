// Declares the function that adds each command, so that no command file needs a header of its own.
#pragma once

#include "command.h"

namespace usbdevctl {

#define USBDEVCTL_COMMAND(name) void name(Command &program);
#define USBDEVCTL_GROUP(heading)
#include "commands/commands.def"
#undef USBDEVCTL_GROUP
#undef USBDEVCTL_COMMAND

}  // namespace usbdevctl
