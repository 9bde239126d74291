#include <usbdev/web.h>

#include <memory>

#include "commands/commands.h"
#include "commands/login_service.h"
#include "commands/shared_arguments.h"
#include "output/json.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct Options {
  std::string sid;
  bool json = false;
};

ExitStatus session(const Options &options) {
  const Answer answer = askLoginService([&] { return vl_sid_auth(options.sid.c_str()); });
  if (answer == Answer::broken) {
    complain("the login service broke off");
    return ExitStatus::failure;
  }
  const bool open = answer == Answer::yes;
  if (options.json) {
    print(Json::document().set("open", open).text());
  } else {
    print(open ? "open\n" : "not open, or the host has no login service\n");
  }
  return open ? ExitStatus::ok : ExitStatus::nothing;
}

}  // namespace

void addSession(Command &program) {
  auto options = std::make_shared<Options>();
  Command &command = program.addCommand("session", "Tell whether a session of the host's web pages is open",
                                        [options] { return session(*options); });
  command.add("sid", &options->sid, "The session's identifier");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
