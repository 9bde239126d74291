// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// From a profile id to the channel that serves it.
#pragma once

#include "core/channel_keys.h"
#include "core/config.h"

namespace usbdev {

inline bool isProfile(int profile) { return profile >= 0 && profile < kProfiles; }
inline bool isChannel(int channel) { return channel >= 0 && channel < kChannels; }

/// The first channel that has a profile; kNone when none has it, the id is not a profile or the file cannot be opened.
int channelOfProfile(int profile);

/// The name of the device that serves a profile; false when no channel does or the file cannot be opened.
bool readDeviceName(int profile, char (&name)[256]);

/// Clears the profile of a channel, and what was made for the profile.
void writeUnbound(const Section &channel);

}  // namespace usbdev
