// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The four profiles with the camera that serves each and the link to its stream.
#pragma once

#include <usbdev/records.h>

#include <array>

#include "output/fields.h"
#include "stream/live_link.h"

namespace usbdevctl {

struct Profile {
  _usbdev_entry entry = {};
  LiveLink link;
};

using Profiles = std::array<Profile, USBDEV_PROFILES>;

FieldRows profileFields(const Profiles &profiles);

}  // namespace usbdevctl
