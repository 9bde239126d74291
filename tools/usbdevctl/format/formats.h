// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a camera offers: one table a format, its sizes down and the rates across.
#pragma once

#include <usbdev/records.h>

#include <array>
#include <string>

#include "output/json.h"

namespace usbdevctl {

/// The library's answer about one camera.
struct CameraFormats {
  int count = 0;
  bool over_60 = false;
  std::array<_usbfmt_des, USBDEV_FORMATS> formats = {};
};

std::string formatsText(const CameraFormats &camera, bool colour);
/// An array.
Json formatsJson(const CameraFormats &camera);

}  // namespace usbdevctl
