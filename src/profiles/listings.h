// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The channels and the profiles, listed.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Profile ids, such as "0,2".
using ProfileList = char[16];

/// Lists the profiles that no channel has.
bool listFreeProfiles(ProfileList &list);

/// Lists the profiles that can stream now, in the order of their channels. Asks cameras with the lock held.
bool listStreamableProfiles(ProfileList &list);

/// Describes the channels, in kChannels rows; those without a device are all zero. False when the file cannot be
/// opened, the rows then as they were.
bool listChannels(_usbdev_entry *rows);

/// Describes the profiles, in kProfiles rows; the profile is kNone in those of profiles that no channel has. False as
/// above.
bool listProfiles(_usbdev_entry *rows);

}  // namespace usbdev
