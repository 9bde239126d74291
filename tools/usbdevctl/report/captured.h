// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera's data for the simulator, which the host's `sim` asks for and writes.
#pragma once

#include <string>

namespace usbdevctl {

/// The shell command that captures the camera of /dev/videoN and prints the folder; without a folder, `sim` names one.
std::string captureCommand(int node, const std::string &folder);

struct Captured {
  std::string folder;
  std::string wrong;  // why there is none
};

/// Reads what the command printed.
Captured readCaptured(const std::string &printed);

}  // namespace usbdevctl
