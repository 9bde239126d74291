// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The frame rate that a camera is set to.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Chooses a rate from the formats of a camera: the first listed one that is not above the request, or else the last
/// one; `chosen` stays as it is when the requested rate is not above 0. False when codec and size are not offered.
bool chooseRate(const _usbfmt_des *formats, int count, const _streaminfo &request, float &chosen);

/// The same for the camera of a profile, which is asked.
bool findRate(int profile, const _streaminfo &request, float &chosen);

}  // namespace usbdev
