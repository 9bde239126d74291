// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The formats of a camera: the library's answer, and for diagnoses what the host's tools print.
#pragma once

#include <string>

#include "format/formats.h"

namespace usbdevctl {

/// Asks the library for the formats of /dev/videoN; its count is negative where they cannot be asked for.
CameraFormats readFormats(int node);

/// Returns what a shell command prints, cut at a megabyte.
std::string outputOf(const std::string &command);

/// The format listing that the library reads of /dev/videoN.
std::string formatListing(int node);

}  // namespace usbdevctl
