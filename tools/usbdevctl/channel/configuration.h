// What a command says when the library refuses: it answers a configuration that it cannot read as it answers a request
// for which there is nothing, so the two have to be told apart.
#pragma once

#include <string>

#include "command_line/exit_status.h"

namespace usbdevctl {

/// Complains that the channel configuration cannot be read.
ExitStatus configurationUnreadable();

/// Complains with the explanation, unless it is the configuration that cannot be read.
ExitStatus nothingApplies(const std::string &explanation);
ExitStatus refused(const std::string &explanation);

}  // namespace usbdevctl
