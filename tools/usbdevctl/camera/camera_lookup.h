// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The cameras that the library knows, looked up by the name that a command was given.
#pragma once

#include <string>

#include "camera/camera_name.h"
#include "command_line/exit_status.h"

namespace usbdevctl {

/// The channels that are not free. Complains where the configuration cannot be read.
ExitStatus readCameras(Cameras &cameras);

/// Finds the one camera with the name. Prints a message if there is none, or more than one, and lists all cameras.
ExitStatus findCamera(const CameraName &name, Camera &camera);
/// The same among channels that were read already.
ExitStatus findCamera(const CameraName &name, const ChannelRows &rows, Camera &camera);

/// Finds the camera that has the profile.
ExitStatus findCameraOf(int profile, Camera &camera);

/// Reads a camera's channel once more, after a change.
ExitStatus readAgain(Camera &camera);

// The profile, port or node of the named camera. A name that is itself one is taken as it is, with or without a camera.
ExitStatus findProfile(const CameraName &name, int &profile);
ExitStatus findPort(const CameraName &name, std::string &port);
ExitStatus findVideoNode(const CameraName &name, int &node);

/// Complains that a change of the camera could not be stored.
ExitStatus notStoredFor(const Camera &camera);

/// Complains why the library refused a change of a profile: it has no camera, or it could not be stored.
ExitStatus refusedFor(int profile);

}  // namespace usbdevctl
