// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What kind of device a record describes.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Any other number of a caller's means a sound card, too.
enum class DeviceType : int { sound_card = 0, camera = 1 };

inline bool isCamera(const _usbdev_des &device) { return device.devtype == static_cast<int>(DeviceType::camera); }

}  // namespace usbdev
