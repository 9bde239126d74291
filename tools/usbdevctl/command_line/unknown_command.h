// A word in a command's place that names none, with the command that may have been meant.
#pragma once

#include <string>
#include <vector>

#include "command_line/command.h"

namespace usbdevctl {

/// What is wrong with the command's name among the words of a command line; empty where nothing is.
std::string unknownCommandText(const Command &program, const std::vector<std::string> &words);

}  // namespace usbdevctl
