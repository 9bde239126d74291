// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The only file that includes the library which reads command lines, because that takes seconds to compile.
#include "command_line/program.h"

#include <CLI/CLI.hpp>
#include <sstream>

#include "command_line/unknown_command.h"
#include "command_line/version.h"
#include "output/numbers.h"
#include "output/output.h"
#include "output/reading.h"

namespace usbdevctl {

namespace {

constexpr char kFooter[] =
    "Exit status: 0 success, 1 failure of the library or the system, 2 wrong command line,\n"
    "3 success with nothing that applies (no channel, no format, no datagram, no log).";

/// Adds one argument, whatever its type.
struct AddTo {
  CLI::App &command;
  const Argument &argument;

  CLI::Option *operator()(bool *target) const { return command.add_flag(argument.name, *target, argument.help); }

  template <typename Value>
  CLI::Option *operator()(Value *target) const {
    return command.add_option(argument.name, *target, argument.help);
  }
};

CLI::Validator rangeOf(const Argument &argument) {
  const int least = argument.range->first;
  const int most = argument.range->second;
  const std::string wanted = most == Argument::kNoLimit ? "at least " + std::to_string(least)
                                                        : std::to_string(least) + " to " + std::to_string(most);
  const auto refuse = [least, most, wanted](const std::string &text) -> std::string {
    const std::optional<int> number = readNumber(text);
    const bool good = number && *number >= least && *number <= most;
    return good ? "" : "must be " + wanted + ", not " + text;
  };
  return {refuse, wanted};
}

void addArgument(CLI::App &command, const Argument &argument) {
  CLI::Option *option = std::visit(AddTo{command, argument}, argument.target)->required(argument.required);
  if (!argument.words.empty()) option->check(CLI::IsMember(argument.words));
  if (argument.range) option->check(rangeOf(argument));
  if (argument.checker) option->check(CLI::Validator(argument.checker, ""));
}

void addCommands(CLI::App &app, const Command &described, ExitStatus &status) {
  for (const Argument &argument : described.arguments()) addArgument(app, argument);
  for (const Command &below : described.commands()) {
    addCommands(*app.add_subcommand(below.name(), below.description())->group(below.group()), below, status);
  }
  if (!described.commands().empty()) app.require_subcommand(1);
  if (described.action()) app.callback([&described, &status] { status = described.action()(); });
}

ExitStatus misused(const std::string &reason) {
  complain(reason);
  complain("try 'usbdevctl --help' or 'usbdevctl COMMAND --help'");
  return ExitStatus::usage;
}

}  // namespace

ExitStatus runProgram(const Command &program, int argc, char **argv) {
  if (const std::string wrong = unknownCommandText(program, {argv + 1, argv + argc}); !wrong.empty()) {
    return misused(wrong);
  }
  CLI::App app(program.description(), program.name());
  app.footer(kFooter);
  app.set_version_flag("--version", versionText, "Print the versions of program and library and exit");
  ExitStatus status = ExitStatus::ok;
  addCommands(app, program, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success &help) {
    std::ostringstream text;
    throwOnFailure(text);
    app.exit(help, text);
    print(text.str());
  } catch (const CLI::ParseError &wrong) {
    return misused(wrong.what());
  }
  if (flushOutput()) return status;
  complain("the output cannot be written");
  return ExitStatus::failure;
}

}  // namespace usbdevctl
