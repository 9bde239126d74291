// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the channels may do on a host that cannot encode (any more).
#pragma once

#include "devices/host_answers.h"

namespace usbdev {

/// If the host cannot encode, changes channels to MJPEG and marks those without it as unsupported; false when the file
/// cannot be opened or stored.
bool checkCodecs(HostAnswers &host);

}  // namespace usbdev
