#include "commands/shared_arguments.h"

#include <usbdev/records.h>

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestPort = sizeof(_usbdev_des::usbslot) - 1;

// A name that is cut would be that of another port.
std::string checkPort(const std::string &port) {
  if (port.empty()) return "the port's name is empty";
  return port.size() > kLongestPort ? "the port's name is longer than " + std::to_string(kLongestPort) + " bytes" : "";
}

}  // namespace

void addProfile(Command &command, int &profile) {
  command.add("profile", &profile, "Profile, 0 to 3").limit(0, USBDEV_PROFILES - 1);
}

Argument &addPort(Command &command, std::string &port, const std::string &name) {
  return command.add(name, &port, "Kernel name of the USB port, such as 3-1.2").check(checkPort);
}

void addJsonFlag(Command &command, bool &json) {
  command.add("--json", &json, "Print JSON for programs instead of text for people");
}

}  // namespace usbdevctl
