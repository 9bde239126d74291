// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera as the program names it, in every message and report alike.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "channel/channels.h"
#include "output/fields.h"

namespace usbdevctl {

/// A channel that has, or keeps the place of, a device.
struct Camera {
  int channel = -1;
  ChannelRow row;
};

using Cameras = std::vector<Camera>;

/// The channels that are not free, in their order.
Cameras camerasOf(const ChannelRows &rows);

bool isAttached(const Camera &camera);

/// channel 2  3-1.2  "USB Camera"  profile 1; for one that is not attached, its state follows.
std::string cameraText(const Camera &camera);

/// The camera's members for programs: channel, slot, device, profile, profile_name.
void addCameraMembers(Fields &fields, const Camera &camera);

/// What a command prints that changed something at a camera: "WHAT: CAMERA" for people, and for programs the given
/// members before those of the camera.
std::string changeOutput(const std::string &what, Fields members, const Camera &camera, bool json);

}  // namespace usbdevctl
