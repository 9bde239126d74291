// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The profiles that no channel has, and the devices that can get one.
#pragma once

#include <usbdev/records.h>

#include <array>
#include <string>

#include "output/json.h"
#include "output/output.h"

namespace usbdevctl {

struct Availability {
  std::string profiles;  // "0,2"
  std::array<_availinfo, USBDEV_CHANNELS> channels = {};
};

/// Whether some profile can be assigned to some device.
bool canAssign(const Availability &available);

std::string availabilityText(const Availability &available, bool colour, std::size_t width = kEndless);
Json availabilityJson(const Availability &available);

}  // namespace usbdevctl
