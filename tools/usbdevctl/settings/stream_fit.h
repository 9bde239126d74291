// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Stream settings on another camera than the one that they were made for.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "format/formats.h"
#include "stream/stream_settings.h"

namespace usbdevctl {

/// A setting that the camera does not offer as it was wanted.
struct StreamDifference {
  std::string setting;  // its name for programs
  std::string wanted;
  std::optional<std::string> taken;  // none if streams of this camera do not have the setting
};

/// "size 640x480 instead of 1280x720"
std::string differenceText(const StreamDifference &difference);

struct StreamFit {
  StreamChange stream;  // what the camera can do, nearest to what was wanted
  std::vector<StreamDifference> differences;
};

/// Keeps codec, size and rate where the camera offers them, and else takes the first codec, the size with the
/// nearest number of pixels and the nearest rate.
StreamFit fitStream(const StreamChange &wanted, const CameraFormats &camera);

}  // namespace usbdevctl
