// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The links below the application's folder that lead to a profile's live stream.
#pragma once

#include <cstddef>

#include "core/config.h"

namespace usbdev {

constexpr std::size_t kLinkNameSize = 64;

/// The number in the name of a profile's stream directory: profile 0 has "channel1".
int streamNumber(int profile);

/// Makes a symbolic link to a profile's stream folder under a name; an empty name makes no link.
void makeStreamLink(int profile, const char *name);

/// Removes the link of that name if there is one, also when its target is gone.
void removeStreamLink(const char *name);

/// Removes a link that was made under a new name which then could not be stored.
void takeBackStreamLink(const char *name);

/// Clears the stored identifiers of a channel's share link.
void withdrawShareLink(const Section &channel);

}  // namespace usbdev
