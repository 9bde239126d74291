#include <usbdev/hotplug.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct Options {
  int profile = 0;
  int value = 0;
};

ExitStatus sps(const Options &options) {
  if (mn_set_usbchn_sps(options.profile, options.value) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(options.profile) +
           " is bound to no camera, or the configuration cannot be written");
  return ExitStatus::failure;
}

}  // namespace

void addSps(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command =
      program.addCommand("sps", "Record a profile's stream-parameter state", [options] { return sps(*options); });
  addProfile(command, options->profile);
  command.add("value", &options->value, "The state's flag");
}

}  // namespace usbdevctl
