// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A device that is plugged in or removed.
#pragma once

#include <usbdev/records.h>

#include "core/text.h"
#include "devices/host_answers.h"

namespace usbdev {

/// Handles one event of a device: chooses its channel, stores what belongs there, updates the conflict marks and, for a
/// camera, notifies. Returns the channel, or kNone when none fits, the device is ignored, or the file cannot be opened
/// or stored.
/// device: a sound card may get its channel's name. profile: the channel's, always set. devname: set when a camera is
/// removed. vnode: the node before the removal, set on removal. conflict: set when a camera that is plugged in
/// conflicts with another one.
int handleHotplug(HostAnswers &host, _usbdev_des &device, int &profile, TextBuffer devname, int &vnode,
                  _usbdev_conflict &conflict);

}  // namespace usbdev
