// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Completion of the program's command line in a shell, as a script that the shell reads. It is made from the
// description of the commands; only the names of the host's cameras are asked of the program while it completes.
#pragma once

#include <string>

#include "command_line/command.h"

namespace usbdevctl {

std::string bashCompletion(const Command &program);
std::string zshCompletion(const Command &program);
std::string fishCompletion(const Command &program);

}  // namespace usbdevctl
