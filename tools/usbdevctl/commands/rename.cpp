#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct Options {
  int profile = 0;
  std::string name;
};

ExitStatus rename(const Options &options) {
  constexpr int kLogChangesOnly = 0;
  if (vl_set_profile_channelname(options.profile, options.name.c_str(), kLogChangesOnly) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(options.profile) +
           " is bound to no camera, or the configuration cannot be written");
  return ExitStatus::failure;
}

}  // namespace

void addRename(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command =
      program.addCommand("rename", "Give a profile a display name", [options] { return rename(*options); });
  addProfile(command, options->profile);
  command.add("name", &options->name, "Name, cut at 255 bytes");
}

}  // namespace usbdevctl
