// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The devices that can get a profile, and what is in a port.
#pragma once

#include <usbdev/records.h>

#include "core/text.h"

namespace usbdev {

/// Describes the channels with neither profile nor conflict mark, in kChannels rows; false when the file cannot be
/// opened, the rows then as they were.
bool listUnassigned(_availinfo *rows);

/// The same for the channels that serve a profile, or none with kNone; the others are unavailable.
bool listOfProfile(_availinfo *rows, int profile);

/// Reads the codecs of the camera in a port, as in "0 1"; nothing where no device is in it. False when the device has
/// no video node, its port is switched off or the file cannot be opened.
bool readSlotCodecs(const char *usbslot, TextBuffer cap);

/// Reads what the device in a port streams. The record is preset in any case; its channel is kNone where no device is
/// in the port. False when the file cannot be opened.
bool readSlot(const char *usbslot, _streaminfo &info);

}  // namespace usbdev
