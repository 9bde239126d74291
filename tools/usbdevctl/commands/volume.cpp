#include <usbdev/hotplug.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus volume(int profile) {
  if (mn_set_usbdev_volume(profile) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(profile) + " has no sound card whose volume could be set");
  return ExitStatus::failure;
}

}  // namespace

void addVolume(Command &program) {
  auto profile = std::make_shared<int>(0);
  Command &command = program.addCommand("volume", "Apply a profile's stored volume to its sound card",
                                        [profile] { return volume(*profile); });
  addProfile(command, *profile);
}

}  // namespace usbdevctl
