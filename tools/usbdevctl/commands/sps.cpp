#include <usbdev/hotplug.h>

#include <memory>

#include "commands/commands.h"
#include "commands/profile_option.h"
#include "output/output.h"
#include "program.h"

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

void addSps(Program &program) {
  auto options = std::make_shared<Options>();
  CLI::App &command =
      program.addCommand("sps", "Record a profile's stream-parameter state", [options] { return sps(*options); });
  addProfileOption(command, options->profile);
  command.add_option("value", options->value, "The state's flag")->required();
}

}  // namespace usbdevctl
