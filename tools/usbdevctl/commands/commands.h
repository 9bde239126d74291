// Declares the function that adds each command, so that no command file needs a header of its own.
#pragma once

namespace usbdevctl {

class Program;

#define USBDEVCTL_COMMAND(name) void name(Program &program);
#include "commands/commands.def"
#undef USBDEVCTL_COMMAND

}  // namespace usbdevctl
