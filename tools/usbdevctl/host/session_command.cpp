// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/web.h>

#include <memory>

#include "command_line/commands.h"
#include "command_line/password.h"
#include "command_line/shared_arguments.h"
#include "host/login_service.h"
#include "output/json.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct SessionOptions {
  std::string sid;
  int seconds = 0;
  bool json = false;
};

ExitStatus session(const SessionOptions &options) {
  const std::optional<std::string> sid = secretArgument(options.sid, "session");
  if (!sid) return ExitStatus::usage;
  const Answer answer = askLoginService(options.seconds, [&] { return vl_sid_auth(sid->c_str()); });
  if (answer != Answer::yes && answer != Answer::no) return complainWithout(answer, options.seconds);
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
  auto options = std::make_shared<SessionOptions>();
  Command &command = program.addCommand("session", "Check whether a session of the host's web pages is open",
                                        [options] { return session(*options); });
  command.add("sid", &options->sid, "The session's identifier; - to read it from a pipe");
  addTimeout(command, options->seconds);
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
