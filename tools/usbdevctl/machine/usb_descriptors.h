// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The bandwidth that an interface of a USB device reserves, read in the device's descriptors.
#pragma once

#include <cstdint>
#include <string_view>

namespace usbdevctl {

/// Bits a second of the isochronous endpoints of this alternate setting; a bulk endpoint reserves nothing. The speed of
/// the device is in Mbit/s. Descriptors that are cut or damaged are read as far as they make sense.
std::int64_t reservedBits(std::string_view descriptors, int interface, int setting, int speed);

}  // namespace usbdevctl
