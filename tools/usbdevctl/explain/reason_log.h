// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the machine has against a camera, in the host's event log.
#pragma once

#include "camera/camera.h"
#include "reason/reason.h"

namespace usbdevctl {

/// The event's text: Camera[3-1 HD Cam]: its reason and cure.
std::string reasonEvent(const Camera &camera, const Reason &reason);

/// Writes a warning for each reason that keeps the camera from streaming; false if one could not be written.
bool logReasons(const Camera &camera, const Reasons &reasons);

}  // namespace usbdevctl
