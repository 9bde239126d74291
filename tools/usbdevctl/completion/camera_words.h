// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The names of the cameras that a host has, for a shell that completes a command line.
#pragma once

#include <string>

#include "camera/camera.h"

namespace usbdevctl {

/// A line a name: the name, a tab, and the camera. A port that could be anything but a word to a shell is left out.
std::string cameraWords(const Cameras &cameras);
std::string portWords(const Cameras &cameras);

}  // namespace usbdevctl
