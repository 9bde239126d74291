// A device that comes or goes.
#pragma once

#include <usbdev/records.h>

#include "core/text.h"
#include "devices/host_answers.h"

namespace usbdev {

/// Takes in one event of a device: chooses its channel, stores what belongs there, keeps the conflict marks right and
/// notifies of cameras. Returns the channel, or kNone when none fits, the device is one that is ignored, or the file
/// cannot be opened or stored.
/// device: a sound card may get its channel's name. profile: the channel's, set in every case. devname: set when a
/// camera is removed. vnode: the node before the removal, set on removal. conflict: set when a camera that is plugged
/// in collides with another one.
int handleHotplug(HostAnswers &host, _usbdev_des &device, int &profile, TextBuffer devname, int &vnode,
                  _usbdev_conflict &conflict);

}  // namespace usbdev
