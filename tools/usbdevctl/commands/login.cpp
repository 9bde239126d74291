#include <usbdev/web.h>

#include <memory>

#include "commands/commands.h"
#include "commands/login_service.h"
#include "commands/password.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestPassword = sizeof(NasServer::password) - 1;

ExitStatus login(const std::string &user) {
  const std::optional<std::string> password = readPassword(kLongestPassword);
  if (!password) return ExitStatus::usage;
  switch (askLoginService([&] { return vl_auth(user.c_str(), password->c_str()); })) {
    case Answer::yes:
      return ExitStatus::ok;
    case Answer::no:
      complain("the host did not accept this user and password, or has no login service");
      return ExitStatus::failure;
    case Answer::broken:
      complain("the login service broke off");
      return ExitStatus::failure;
  }
  return ExitStatus::failure;
}

}  // namespace

void addLogin(Command &program) {
  auto user = std::make_shared<std::string>();
  Command &command =
      program.addCommand("login", "Tell whether the host accepts a user; the password is asked for or read from a pipe",
                         [user] { return login(*user); });
  command.add("user", user.get(), "Name of the user");
}

}  // namespace usbdevctl
