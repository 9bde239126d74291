#include <usbdev/hotplug.h>

#include <memory>

#include "commands/cameras.h"
#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus volume(const CameraName &camera) {
  int profile = 0;
  const ExitStatus found = findProfile(camera, profile);
  if (found != ExitStatus::ok) return found;
  if (mn_set_usbdev_volume(profile) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(profile) + " has no sound card whose volume could be set");
  return ExitStatus::failure;
}

}  // namespace

void addVolume(Command &program) {
  auto camera = std::make_shared<CameraArgument>(CameraName::By::profile);
  Command &command = program.addCommand("volume", "Apply a profile's stored volume to its sound card",
                                        [camera] { return volume(camera->name()); });
  addCamera(command, *camera);
}

}  // namespace usbdevctl
