// The arguments that many commands share, each described once.
#pragma once

#include <string>

#include "command.h"

namespace usbdevctl {

/// A profile id, 0 to 3.
inline void addProfile(Command &command, int &profile) {
  command.add("profile", &profile, "Profile, 0 to 3").limit(0, 3);
}

/// A USB port, by its kernel name.
inline void addPort(Command &command, std::string &port) {
  command.add("port", &port, "Kernel name of the USB port, such as 3-1.2");
}

/// The flag that every command with data to show has.
inline void addJsonFlag(Command &command, bool &json) {
  command.add("--json", &json, "Print JSON for programs instead of text for people");
}

}  // namespace usbdevctl
