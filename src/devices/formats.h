// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The formats that a camera offers.
#pragma once

#include <usbdev/records.h>

#include "devices/host_answers.h"

namespace usbdev {

/// Asks a camera for its formats. The table, of USBDEV_FORMATS records, is written whole and only when a format was
/// kept. The number of formats kept; -1 when the query cannot be started.
int listFormats(HostAnswers &host, int vnode, _usbfmt_des *table, bool &over60);

/// Does a format query of this camera that hangs need signal 9 to end?
bool needsHardKill(int vnode);

}  // namespace usbdev
