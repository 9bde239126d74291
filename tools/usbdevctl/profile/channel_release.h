#pragma once

#include <string>

#include "camera/camera.h"

namespace usbdevctl {

/// Frees the channel of a camera that is not attached: unbinds its profile, hands its port over, and resets its keys.
/// What fails is said in `wrong`, with what was done before it.
bool releaseChannel(const Camera &camera, std::string &wrong);

}  // namespace usbdevctl
