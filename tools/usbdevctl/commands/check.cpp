#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/shared_arguments.h"
#include "output/json.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct Options {
  std::string port;
  int profile = 0;
  bool json = false;
};

ExitStatus check(const Options &options) {
  int unassigned = 0;
  const bool allowed = vl_chk_usbdev_profile(options.port.c_str(), options.profile, &unassigned) == 0;
  if (options.json) {
    print(Json::document().set("allowed", allowed).set("unassigned", unassigned == 1).text());
  } else if (allowed) {
    print(unassigned == 1 ? "free: the port's camera has no profile\n" : "allowed\n");
  } else {
    print("refused: the port's camera has another profile\n");
  }
  return allowed ? ExitStatus::ok : ExitStatus::nothing;
}

}  // namespace

void addCheck(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command = program.addCommand("check", "Tell whether the camera in a port may take a profile",
                                        [options] { return check(*options); });
  addPort(command, options->port);
  addProfile(command, options->profile);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
