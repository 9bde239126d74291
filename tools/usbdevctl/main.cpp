// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <new>

#include "command_line/commands.h"
#include "command_line/program.h"
#include "output/output.h"
#include "output/own_streams.h"

namespace {

const char *reason() {
  try {
    if (std::current_exception()) throw;
  } catch (const std::bad_alloc &) {
  } catch (const std::exception &other) {
    return other.what();
  }
  return "out of memory";  // also where there is none for the exception itself
}

/// Takes no memory. What has been printed is whole, and has to arrive as a whole.
[[noreturn]] void endUnfinished() {
  std::fflush(stdout);
  std::fprintf(stderr, "usbdevctl: %s\n", reason());
  _exit(static_cast<int>(usbdevctl::ExitStatus::failure));
}

/// Nobody catches what is thrown, in the program or before it begins: to end is all that can be done.
[[gnu::constructor(101)]] void beginWithTheEnd() { std::set_terminate(endUnfinished); }

}  // namespace

int main(int argc, char **argv) {
  if (!usbdevctl::keepStreamsFromCommands()) {
    usbdevctl::complain("the output cannot be kept from commands");
    return static_cast<int>(usbdevctl::ExitStatus::failure);
  }
  usbdevctl::Command program("usbdevctl", "Drives the USB camera library as the application would.");
#define USBDEVCTL_COMMAND(name) usbdevctl::name(program);
#define USBDEVCTL_GROUP(heading) program.beginGroup(heading);
#include "command_line/commands.def"
#undef USBDEVCTL_GROUP
#undef USBDEVCTL_COMMAND
  return static_cast<int>(usbdevctl::runProgram(program, argc, argv));
}
