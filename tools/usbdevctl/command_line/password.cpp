#include "command_line/password.h"

#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "output/output.h"

namespace usbdevctl {

namespace {

/// A terminal that does not show what is typed. A shell sets its terminal right again after a program that was stopped.
class HiddenTyping {
 public:
  HiddenTyping() : is_terminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (!is_terminal_) return;
    termios hidden = before_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    std::fputs("Password: ", stderr);
  }

  ~HiddenTyping() {
    if (!is_terminal_) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    std::fputc('\n', stderr);
  }

  HiddenTyping(const HiddenTyping &) = delete;
  HiddenTyping &operator=(const HiddenTyping &) = delete;

 private:
  termios before_ = {};
  bool is_terminal_;
};

}  // namespace

std::optional<std::string> readPassword(std::size_t longest) {
  std::string password;
  {
    const HiddenTyping hidden;
    std::getline(std::cin, password);
  }
  if (password.empty()) {
    complain("there is no password");
  } else if (password.size() > longest) {
    complain("the password is longer than " + std::to_string(longest) + " bytes");
  } else if (password.find('\0') != std::string::npos) {
    complain("the password has a zero byte");
  } else {
    return password;
  }
  return std::nullopt;
}

}  // namespace usbdevctl
