#include "program.h"

#include <utility>

#include "output/output.h"

namespace usbdevctl {

namespace {

constexpr char kDescription[] = "Drives the USB camera library as the application would.";
constexpr char kFooter[] =
    "Exit status: 0 success, 1 failure of the library or the system, 2 wrong command line,\n"
    "3 success with nothing that applies (no channel, no format, no datagram, no log).";

}  // namespace

Program::Program() : app_(kDescription, "usbdevctl") {
  app_.require_subcommand(1);
  app_.footer(kFooter);
}

CLI::App &Program::addCommand(const std::string &name, const std::string &description, Action action) {
  CLI::App *command = app_.add_subcommand(name, description);
  command->callback([this, action = std::move(action)] { status_ = action(); });
  return *command;
}

int Program::run(int argc, char **argv) {
  try {
    app_.parse(argc, argv);
  } catch (const CLI::Success &help) {
    app_.exit(help);
  } catch (const CLI::ParseError &wrong) {
    complain(wrong.what());
    complain("try 'usbdevctl --help' or 'usbdevctl COMMAND --help'");
    return static_cast<int>(ExitStatus::usage);
  }
  if (!flushOutput() && status_ != ExitStatus::failure) status_ = ExitStatus::failure;
  return static_cast<int>(status_);
}

void addJsonFlag(CLI::App &command, bool &json) {
  command.add_flag("--json", json, "Print JSON for programs instead of text for people");
}

}  // namespace usbdevctl
