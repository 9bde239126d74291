// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "camera/camera.h"

namespace usbdevctl {

/// Frees the channel of a camera that is not attached: unbinds its profile, hands its port over, and resets its keys.
/// On failure `wrong` has the reason, and what was done before.
bool releaseChannel(const Camera &camera, std::string &wrong);

}  // namespace usbdevctl
