// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Stream settings on another camera than the one that they were made for.
#pragma once

#include <string>
#include <vector>

#include "format/formats.h"
#include "stream/stream_settings.h"

namespace usbdevctl {

struct StreamFit {
  StreamChange stream;                   // what the camera can do, nearest to what was wanted
  std::vector<std::string> differences;  // "size 640x480 instead of 1280x720"
};

/// Keeps codec, size and rate where the camera offers them, and else takes the first codec, the size with the
/// nearest number of pixels and the nearest rate.
StreamFit fitStream(const StreamChange &wanted, const CameraFormats &camera);

}  // namespace usbdevctl
