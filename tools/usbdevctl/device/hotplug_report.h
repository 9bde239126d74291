// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the hotplug handler did with a device, for people and for programs.
#pragma once

#include <usbdev/records.h>

#include "camera/camera.h"
#include "output/fields.h"

namespace usbdevctl {

/// The handler's result with its four outputs.
struct HotplugOutcome {
  int channel = -1;
  int profile = -1;
  char device[sizeof(_usbdev_des::devname)] = {};  // of a removed camera
  int video_node = -1;                             // of a removed camera
  _usbdev_conflict conflict = {};

  HotplugOutcome() { conflict.channel = conflict.profile = -1; }
};

/// `other` is the camera of the conflict, if there is one.
Fields plugReport(const HotplugOutcome &outcome, const Camera &other);
Fields unplugReport(const HotplugOutcome &outcome);

}  // namespace usbdevctl
