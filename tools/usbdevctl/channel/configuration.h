// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a command prints when the library refuses. The library's result is the same for a configuration that it cannot
// read and for a request to which nothing applies, so these functions find out which of the two it was.
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
