#include <usbdev/profiles.h>

#include <memory>

#include "commands/cameras.h"
#include "commands/commands.h"
#include "commands/shared_arguments.h"

namespace usbdevctl {

namespace {

// The event code that the application sends when a user unbinds a profile.
constexpr int kEventCleared = 4;

ExitStatus clear(const CameraName &camera) {
  int profile = 0;
  const ExitStatus found = findProfile(camera, profile);
  if (found != ExitStatus::ok) return found;
  return vl_clear_usbchn_profile(profile, nullptr, kEventCleared) == 0 ? ExitStatus::ok : refusedFor(profile);
}

}  // namespace

void addClear(Command &program) {
  auto camera = std::make_shared<CameraArgument>(CameraName::By::profile);
  Command &command =
      program.addCommand("clear", "Unbind a profile and remove its links", [camera] { return clear(camera->name()); });
  addCamera(command, *camera);
}

}  // namespace usbdevctl
