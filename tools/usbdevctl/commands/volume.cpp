#include <usbdev/hotplug.h>

#include <memory>

#include "commands/commands.h"
#include "commands/profile_option.h"
#include "output/output.h"
#include "program.h"

namespace usbdevctl {

namespace {

ExitStatus volume(int profile) {
  if (mn_set_usbdev_volume(profile) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(profile) + " has no sound card whose volume could be set");
  return ExitStatus::failure;
}

}  // namespace

void addVolume(Program &program) {
  auto profile = std::make_shared<int>(0);
  CLI::App &command = program.addCommand("volume", "Apply a profile's stored volume to its sound card",
                                         [profile] { return volume(*profile); });
  addProfileOption(command, *profile);
}

}  // namespace usbdevctl
