// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The devices of the channels, as the application lists them.
#pragma once

#include <usbdev/records.h>

#include <array>

#include "output/fields.h"

namespace usbdevctl {

/// A row for each channel with a device.
FieldRows deviceFields(const std::array<_usbdev_entry, USBDEV_CHANNELS> &entries);

}  // namespace usbdevctl
