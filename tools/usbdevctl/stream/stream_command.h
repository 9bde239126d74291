// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the commands about a profile's stream share.
#pragma once

#include <usbdev/records.h>

#include "command_line/command.h"

namespace usbdevctl {

/// Reads a profile's stream settings; what keeps the profile from having any is explained on standard error.
ExitStatus readStream(int profile, _streaminfo &record);

void addStreamSet(Command &stream);

}  // namespace usbdevctl
