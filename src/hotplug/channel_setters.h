// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the application sets on the channel that serves a profile.
#pragma once

namespace usbdev {

/// Stores the state of the stream parameters; false when no channel serves the profile or nothing was stored.
bool storeSpsState(int profile, int value);

/// Sets the channel's sound card to the stored volume: what the host's sound library returned, or -1 without a card.
int applyStoredVolume(int profile);

}  // namespace usbdev
