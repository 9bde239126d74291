// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the device of a profile can deliver: the codecs that the channel has stored, and the camera's own formats.
#pragma once

#include <optional>
#include <string>

#include "format/formats.h"

namespace usbdevctl {

struct Capabilities {
  std::optional<std::string> video;  // codecs as stored, "0 1"
  std::optional<std::string> audio;  // as stored
  CameraFormats camera;
};

std::string capabilitiesText(const Capabilities &capabilities, bool colour);
Json capabilitiesJson(const Capabilities &capabilities);

}  // namespace usbdevctl
