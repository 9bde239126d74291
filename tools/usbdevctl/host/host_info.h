#pragma once

#include "command_line/command.h"

namespace usbdevctl {

/// Adds the command "info" below "host".
void addHostInfo(Command &host);

}  // namespace usbdevctl
