// The program as a set of commands. A command is one file in commands/ and one line in commands/commands.def.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "exit_status.h"

namespace usbdevctl {

using Action = std::function<ExitStatus()>;

class Program {
 public:
  Program();

  /// Adds a command whose action runs once its arguments are read. The result takes the command's options.
  CLI::App &addCommand(const std::string &name, const std::string &description, Action action);

  int run(int argc, char **argv);

 private:
  CLI::App app_;
  ExitStatus status_ = ExitStatus::ok;
};

/// The option that every command with data to show has.
void addJsonFlag(CLI::App &command, bool &json);

}  // namespace usbdevctl
