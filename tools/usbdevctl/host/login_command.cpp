// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/web.h>

#include <memory>

#include "command_line/commands.h"
#include "command_line/password.h"
#include "host/login_service.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestPassword = sizeof(NasServer::password) - 1;

struct LoginOptions {
  std::string user;
  int seconds = 0;
};

ExitStatus login(const LoginOptions &options) {
  const std::optional<std::string> password = readPassword(kLongestPassword);
  if (!password) return ExitStatus::usage;
  const auto question = [&] { return vl_auth(options.user.c_str(), password->c_str()); };
  const Answer answer = askLoginService(options.seconds, question);
  if (answer == Answer::yes) return ExitStatus::ok;
  if (answer != Answer::no) return complainWithout(answer, options.seconds);
  complain("the host did not accept this user and password, or has no login service");
  return ExitStatus::failure;
}

}  // namespace

void addLogin(Command &program) {
  auto options = std::make_shared<LoginOptions>();
  Command &command = program.addCommand("login", "Check a user; asks for the password, or reads it from a pipe",
                                        [options] { return login(*options); });
  command.add("user", &options->user, "Name of the user");
  addTimeout(command, options->seconds);
}

}  // namespace usbdevctl
