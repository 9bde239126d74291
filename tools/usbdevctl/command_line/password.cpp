// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/password.h"

#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <iostream>

#include "output/output.h"

namespace usbdevctl {

namespace {

/// A terminal that does not show what is typed. A shell sets its terminal right again after a program that was stopped.
class HiddenTyping {
 public:
  explicit HiddenTyping(const std::string &what) : is_terminal_(tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (!is_terminal_) return;
    termios hidden = before_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
    std::fprintf(stderr, "%c%s: ", std::toupper(what[0]), what.c_str() + 1);
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

constexpr std::size_t kLongestIdentifier = 255;

std::optional<std::string> read(const std::string &what, std::size_t longest) {
  std::string secret;
  {
    const HiddenTyping hidden(what);
    std::getline(std::cin, secret);
  }
  if (secret.empty()) {
    complain("there is no " + what);
  } else if (secret.size() > longest) {
    complain("the " + what + " is longer than " + std::to_string(longest) + " bytes");
  } else if (secret.find('\0') != std::string::npos) {
    complain("the " + what + " has a zero byte");
  } else {
    return secret;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> readPassword(std::size_t longest) { return read("password", longest); }

std::optional<std::string> secretArgument(const std::string &argument, const char *what) {
  return argument == "-" ? read(what, kLongestIdentifier) : argument;
}

}  // namespace usbdevctl
