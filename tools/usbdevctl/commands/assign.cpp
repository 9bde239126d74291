#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct Options {
  std::string port;
  int profile = 0;
};

ExitStatus assign(Options &options) {
  if (vl_set_usbchn_profile(options.port.data(), options.profile) == 0) return ExitStatus::ok;
  complain("profile " + std::to_string(options.profile) + " cannot be bound to port " + options.port +
           ": the port has no attached camera, its camera has another profile, or another camera has this one");
  return ExitStatus::failure;
}

}  // namespace

void addAssign(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command =
      program.addCommand("assign", "Bind a profile to the camera in a port", [options] { return assign(*options); });
  addPort(command, options->port);
  addProfile(command, options->profile);
}

}  // namespace usbdevctl
