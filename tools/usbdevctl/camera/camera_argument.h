// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The camera or port that a command is about, as an argument of its command line.
#pragma once

#include <string>

#include "camera/camera_name.h"
#include "command_line/command.h"

namespace usbdevctl {

/// A camera as the command line names it; what a bare number counts is the command's choice.
struct CameraArgument {
  explicit CameraArgument(CameraName::By bare_number) : bare_number_(bare_number) {}

  bool isGiven() const { return !text_.empty(); }

  /// The name, once the command line was found good.
  CameraName name() const;

 private:
  friend Argument &addCamera(Command &command, CameraArgument &camera);

  CameraName::By bare_number_;
  std::string text_;
};

/// A camera, by port, channel or profile.
Argument &addCamera(Command &command, CameraArgument &camera);

/// A USB port that need not have a camera, by its kernel name.
Argument &addPort(Command &command, std::string &port, const std::string &name);

/// The command line of a command about one camera.
struct CameraOptions {
  explicit CameraOptions(CameraName::By bare_number) : camera(bare_number) {}

  CameraArgument camera;
  bool json = false;
};

/// Adds the camera and --json.
void addCameraOptions(Command &command, CameraOptions &options);

}  // namespace usbdevctl
