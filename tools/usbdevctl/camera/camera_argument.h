// The arguments that many commands share, each described once.
#pragma once

#include <string>

#include "camera/camera_name.h"
#include "command_line/command.h"

namespace usbdevctl {

/// A profile id, 0 to 3.
void addProfile(Command &command, int &profile);

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

/// The flag that every command with something to print has.
void addJsonFlag(Command &command, bool &json);

}  // namespace usbdevctl
