// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera_argument.h"

#include <usbdev/records.h>

#include "command_line/shared_arguments.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestPort = sizeof(_usbdev_des::usbslot) - 1;

// A name that is cut would be that of another port.
std::string checkPort(const std::string &port) {
  if (port.empty()) return "the port's name is empty";
  return port.size() > kLongestPort ? "the port's name is longer than " + std::to_string(kLongestPort) + " bytes" : "";
}

std::string bareNumberHelp(CameraName::By bare_number) {
  switch (bare_number) {
    case CameraName::By::channel:
      return "a bare number is a channel";
    case CameraName::By::video_node:
      return "a bare number is the N of /dev/videoN";
    default:
      return "a bare number is a profile";
  }
}

}  // namespace

CameraName CameraArgument::name() const {
  std::string wrong;
  return readCameraName(text_, bare_number_, wrong).value_or(CameraName());
}

Argument &addCamera(Command &command, CameraArgument &camera) {
  const auto check = [bare_number = camera.bare_number_](const std::string &text) {
    std::string wrong;
    readCameraName(text, bare_number, wrong);
    return wrong;
  };
  const std::string help = "Camera by port (3-1.2), channel (ch2) or profile (pf1); ";
  return command.add("camera", &camera.text_, help + bareNumberHelp(camera.bare_number_))
      .check(check)
      .completeWith("cameras");
}

Argument &addPort(Command &command, std::string &port, const std::string &name) {
  return command.add(name, &port, "Kernel name of the USB port, such as 3-1.2").check(checkPort).completeWith("ports");
}

void addCameraOptions(Command &command, CameraOptions &options) {
  addCamera(command, options.camera);
  addJsonFlag(command, options.json);
}

}  // namespace usbdevctl
