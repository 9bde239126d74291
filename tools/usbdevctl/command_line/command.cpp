// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "command_line/command.h"

namespace usbdevctl {

Argument::Argument(std::string named, Target goes_to, std::string helped)
    : name(std::move(named)), target(goes_to), help(std::move(helped)), required(!isOption()) {}

Argument &Argument::require(bool is_required) {
  required = is_required;
  return *this;
}

Argument &Argument::allow(std::vector<std::string> only) {
  words = std::move(only);
  return *this;
}

Argument &Argument::limit(int least, int most) {
  range = {least, most};
  return *this;
}

Argument &Argument::check(Checker by) {
  checker = std::move(by);
  return *this;
}

Argument &Argument::completeWith(std::string names_of_host) {
  host_names = std::move(names_of_host);
  return *this;
}

bool Argument::isOption() const { return name.front() == '-'; }

bool Argument::isFlag() const { return std::holds_alternative<bool *>(target); }

Command::Command(std::string name, std::string description, Action action)
    : name_(std::move(name)), description_(std::move(description)), action_(std::move(action)) {}

Command &Command::addCommand(const std::string &name, const std::string &description, Action action) {
  Command &command = commands_.emplace_back(name, description, std::move(action));
  command.group_ = heading_;
  return command;
}

Argument &Command::add(const std::string &name, Argument::Target target, const std::string &help) {
  return arguments_.emplace_back(name, target, help);
}

}  // namespace usbdevctl
