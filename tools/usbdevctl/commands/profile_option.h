// The profile argument that many commands share.
#pragma once

#include <CLI/CLI.hpp>

namespace usbdevctl {

/// A required profile id, 0 to 3.
inline CLI::Option *addProfileOption(CLI::App &command, int &profile) {
  return command.add_option("profile", profile, "Profile, 0 to 3")->required()->check(CLI::Range(0, 3));
}

/// A required USB port, by its kernel name.
inline CLI::Option *addPortOption(CLI::App &command, std::string &port) {
  return command.add_option("port", port, "Kernel name of the USB port, such as 3-1.2")->required();
}

}  // namespace usbdevctl
