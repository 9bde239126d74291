// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a user calls a camera: a port (3-1.2), a channel (ch2) or a profile (pf1), the latter two by the names of the
// configuration's own sections; a node (/dev/video0); or a bare number, which counts what the command is about.
#pragma once

#include <optional>
#include <string>

#include "camera/camera.h"

namespace usbdevctl {

struct CameraName {
  enum class By { port, channel, profile, video_node };

  By by = By::profile;
  int number = -1;
  std::string port;
};

/// Nothing for a text that cannot name a camera; `wrong` is then why.
std::optional<CameraName> readCameraName(const std::string &text, CameraName::By bare_number, std::string &wrong);

/// The cameras with this name. One that is attached hides those that are not, which may have been in the same port.
Cameras namedCameras(const Cameras &cameras, const CameraName &name);

/// port 3-1.2, channel 2, profile 1
std::string nameText(const CameraName &name);

}  // namespace usbdevctl
