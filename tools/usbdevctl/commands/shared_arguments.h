// The arguments that many commands share, each described once.
#pragma once

#include <string>

#include "command.h"

namespace usbdevctl {

/// A profile id, 0 to 3.
void addProfile(Command &command, int &profile);

/// A USB port, by its kernel name.
Argument &addPort(Command &command, std::string &port, const std::string &name = "port");

/// The flag that every command with data to show has.
void addJsonFlag(Command &command, bool &json);

}  // namespace usbdevctl
