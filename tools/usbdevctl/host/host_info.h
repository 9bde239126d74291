// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "command_line/command.h"

namespace usbdevctl {

/// Adds the command "info" below "host".
void addHostInfo(Command &host);

}  // namespace usbdevctl
