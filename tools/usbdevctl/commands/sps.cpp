#include <usbdev/hotplug.h>

#include <memory>

#include "commands/cameras.h"
#include "commands/commands.h"
#include "commands/shared_arguments.h"

namespace usbdevctl {

namespace {

struct Options {
  CameraArgument camera{CameraName::By::profile};
  int value = 0;
};

ExitStatus sps(const Options &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  return mn_set_usbchn_sps(profile, options.value) == 0 ? ExitStatus::ok : refusedFor(profile);
}

}  // namespace

void addSps(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command =
      program.addCommand("sps", "Record a profile's stream-parameter state", [options] { return sps(*options); });
  addCamera(command, options->camera);
  command.add("value", &options->value, "The state's flag");
}

}  // namespace usbdevctl
