// The frame rate that a camera is set to.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Chooses among the formats of a camera the first listed rate that is not above the requested one, or else the last
/// listed; `chosen` stays as it is when the requested rate is not above 0. False when codec and size are not offered.
bool chooseRate(const _usbfmt_des *formats, int count, const _streaminfo &request, float &chosen);

/// The same for the camera of a profile, which is asked.
bool findRate(int profile, const _streaminfo &request, float &chosen);

}  // namespace usbdev
