// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A word that is not a command, and the most similar command.
#pragma once

#include <string>
#include <vector>

#include "command_line/command.h"

namespace usbdevctl {

/// What is wrong with the command's name among the words of a command line; empty where nothing is.
std::string unknownCommandText(const Command &program, const std::vector<std::string> &words);

}  // namespace usbdevctl
