// Which profile a device serves, and the profile's name.
#pragma once

#include "core/change_notification.h"

namespace usbdev {

/// May the device in a port take a profile? `unassigned` becomes true when it has none; an unknown port may take any.
bool mayAssign(const char *usbslot, int profile, bool &unassigned);

/// Binds a profile to the channel of the device in a port. True also when it just was; false when either is bound
/// otherwise.
bool assignProfile(const char *usbslot, int profile);

/// Takes a profile from its channel and hands the port over. client_ip: dotted address of who asks, may be null.
bool clearProfile(int profile, const char *client_ip, EventCode code);

/// Renames a profile; the name is kept to 255 bytes.
bool renameProfile(int profile, const char *name, EventCode code);

}  // namespace usbdev
