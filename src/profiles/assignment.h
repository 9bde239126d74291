// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which profile a device serves, and the profile's name.
#pragma once

#include "core/change_notification.h"

namespace usbdev {

/// Can the device in a port get a profile? Sets `unassigned` when it has none. True for an unknown port.
bool mayAssign(const char *usbslot, int profile, bool &unassigned);

/// Assigns a profile to the channel of the device in a port. True also when the device has it already; false when
/// another device has the profile, the device has another profile, or the port is unknown.
bool assignProfile(const char *usbslot, int profile);

/// Takes a profile from its channel, and hands over to a channel that waits for this one. client_ip: the client's
/// dotted address, may be null.
bool clearProfile(int profile, const char *client_ip, EventCode code);

/// Renames a profile; the name is cut to 255 bytes.
bool renameProfile(int profile, const char *name, EventCode code);

}  // namespace usbdev
