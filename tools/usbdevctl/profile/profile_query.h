// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "profile/profiles.h"

namespace usbdevctl {

/// Asks the library for the profiles and follows their links; false when the configuration cannot be read.
bool readProfiles(Profiles &profiles);

}  // namespace usbdevctl
