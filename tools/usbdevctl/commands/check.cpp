#include <usbdev/profiles.h>

#include <memory>

#include "commands/commands.h"
#include "commands/profile_option.h"
#include "output/json.h"
#include "output/output.h"
#include "program.h"

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
    Json document = jsonDocument();
    document["allowed"] = allowed;
    document["unassigned"] = unassigned == 1;
    print(jsonText(document));
  } else if (allowed) {
    print(unassigned == 1 ? "free: the port's camera has no profile\n" : "allowed\n");
  } else {
    print("refused: the port's camera has another profile\n");
  }
  return allowed ? ExitStatus::ok : ExitStatus::nothing;
}

}  // namespace

void addCheck(Program &program) {
  auto options = std::make_shared<Options>();
  CLI::App &command = program.addCommand("check", "Tell whether the camera in a port may take a profile",
                                         [options] { return check(*options); });
  addPortOption(command, options->port);
  addProfileOption(command, options->profile);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
