#include <usbdev/profiles.h>

#include <memory>

#include "commands/cameras.h"
#include "commands/commands.h"
#include "commands/shared_arguments.h"

namespace usbdevctl {

namespace {

struct Options {
  CameraArgument camera{CameraName::By::profile};
  std::string name;
};

ExitStatus rename(const Options &options) {
  constexpr int kLogChangesOnly = 0;
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  return vl_set_profile_channelname(profile, options.name.c_str(), kLogChangesOnly) == 0 ? ExitStatus::ok
                                                                                         : refusedFor(profile);
}

}  // namespace

void addRename(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command =
      program.addCommand("rename", "Give a profile a display name", [options] { return rename(*options); });
  addCamera(command, options->camera);
  command.add("name", &options->name, "Name, cut at 255 bytes");
}

}  // namespace usbdevctl
