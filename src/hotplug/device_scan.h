// The attached devices, as the drivers list them.
#pragma once

#include <usbdev/records.h>

#include "devices/host_answers.h"

namespace usbdev {

/// How many records the lists of new devices hold.
inline constexpr int kNewDevices = 10;

/// get_conf_chinfo with answers that the calling operation may already have; nothing is null.
int findCameras(HostAnswers &host, _usbdev_update *channels, int *conflict_map, int *new_camera_count,
                _usbdev_update *new_cameras);

}  // namespace usbdev
