// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Where a player finds the picture of a stream.
#pragma once

#include <string>

namespace usbdevctl {

/// The address of the profile's playlist on a real machine, whose applications' folder this program sees elsewhere than
/// everybody else does; empty on any other host. All paths are below the root.
std::string pictureAddress(int profile, const std::string &root = "");

}  // namespace usbdevctl
