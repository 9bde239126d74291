// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A command as data: its arguments and options, or the commands below it. The command line is read, the help printed
// and the shells' completion written from this one description.
#pragma once

#include <functional>
#include <limits>
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "command_line/exit_status.h"

namespace usbdevctl {

using Action = std::function<ExitStatus()>;

/// An option, whose name begins with "--", or an argument, which is known by its place and usually required.
struct Argument {
  /// Where the value goes. A bool is a flag; an optional stays empty where the option is not given.
  using Target = std::variant<bool *, int *, std::string *, std::optional<int> *, std::optional<float> *,
                              std::optional<std::string> *>;
  /// Returns what is wrong with a value; empty if nothing is.
  using Checker = std::function<std::string(const std::string &)>;
  static constexpr int kNoLimit = std::numeric_limits<int>::max();

  Argument(std::string named, Target goes_to, std::string helped);

  Argument &require(bool is_required = true);
  Argument &allow(std::vector<std::string> only);
  Argument &limit(int least, int most = kNoLimit);
  Argument &check(Checker by);
  Argument &completeWith(std::string names_of_host);

  bool isOption() const;
  bool isFlag() const;

  std::string name;
  Target target;
  std::string help;
  bool required = false;
  std::vector<std::string> words;  // where there are any, the value is one of them
  std::optional<std::pair<int, int>> range;
  Checker checker;
  std::string host_names;  // "cameras" or "ports": what a shell completes it with
};

class Command {
 public:
  /// A command without an action is a name for the commands below it.
  Command(std::string name, std::string description, Action action = nullptr);

  /// The commands that are added from now on stand under this heading in the help; without one, they are hidden.
  void beginGroup(const std::string &heading) { heading_ = heading; }

  // References stay good while more is added.
  Command &addCommand(const std::string &name, const std::string &description, Action action = nullptr);
  Argument &add(const std::string &name, Argument::Target target, const std::string &help);

  const std::string &name() const { return name_; }
  const std::string &group() const { return group_; }
  bool isHidden() const { return group_.empty(); }
  const std::string &description() const { return description_; }
  const Action &action() const { return action_; }
  const std::list<Command> &commands() const { return commands_; }
  const std::list<Argument> &arguments() const { return arguments_; }

 private:
  std::string name_;
  std::string description_;
  Action action_;
  std::string heading_ = "Commands";  // of the commands that are added next
  std::string group_;                 // the heading of this one in the help
  std::list<Command> commands_;
  std::list<Argument> arguments_;
};

}  // namespace usbdevctl
