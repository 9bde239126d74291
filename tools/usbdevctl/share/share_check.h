// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "command_line/command.h"

namespace usbdevctl {

/// Adds the command "check", which does what the host does when a viewer opens a link.
void addShareCheck(Command &share);

}  // namespace usbdevctl
