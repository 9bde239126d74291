#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

// The event code that the application sends when a user unbinds a profile.
constexpr int kEventCleared = 4;

ExitStatus clear(int profile) {
  if (vl_clear_usbchn_profile(profile, nullptr, kEventCleared) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(profile) + " is bound to no camera, or the configuration cannot be written");
  return ExitStatus::failure;
}

}  // namespace

void addClear(Command &program) {
  auto profile = std::make_shared<int>(0);
  Command &command =
      program.addCommand("clear", "Unbind a profile and remove its links", [profile] { return clear(*profile); });
  addProfile(command, *profile);
}

}  // namespace usbdevctl
