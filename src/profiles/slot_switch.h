// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The switch that users have for each USB port.
#pragma once

namespace usbdev {

enum class SlotState { off, on };

/// Switches a port and updates the conflict marks; false when no device is in it, or the file cannot be opened or
/// stored.
bool switchSlot(const char *usbslot, SlotState state);

}  // namespace usbdev
