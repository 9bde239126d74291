// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the camera and the sound card of a profile can do.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

using CapabilityText = char[16];

/// Asks the camera of a profile for its formats. The table, of USBDEV_FORMATS records, is written as listFormats writes
/// it. The number of formats; -1 also when the profile has no camera, or it is not attached or switched off.
int listProfileFormats(int profile, _usbfmt_des *table);

/// Reads the stored codecs of a profile's camera, such as "0 1"; false when it has none that is attached and switched
/// on.
bool readVideoCapability(int profile, CapabilityText &text);

/// The same for its sound card.
bool readAudioCapability(int profile, CapabilityText &text);

}  // namespace usbdev
