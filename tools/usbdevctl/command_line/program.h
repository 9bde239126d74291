// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The program: reads the command line by the description of the commands and runs the one that it names.
#pragma once

#include "command_line/command.h"

namespace usbdevctl {

/// Runs the action of the command that the command line names; the program's exit status.
ExitStatus runProgram(const Command &program, int argc, char **argv);

}  // namespace usbdevctl
