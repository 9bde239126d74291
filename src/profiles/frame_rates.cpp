// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/frame_rates.h"

#include "profiles/capabilities.h"

namespace usbdev {
namespace {

const _usbfmt_des *findFormat(const _usbfmt_des *formats, int count, int codec) {
  for (int i = 0; i < count; ++i) {
    if (formats[i].codec == codec) return &formats[i];
  }
  return nullptr;
}

const _usbres_des *findSize(const _usbfmt_des &format, int width, int height) {
  for (int i = 0; i < format.res_count; ++i) {
    if (format.res[i].width == width && format.res[i].height == height) return &format.res[i];
  }
  return nullptr;
}

/// The first listed rate that is not above the requested one, else the last listed. The list keeps the camera's order.
void chooseListed(const _usbres_des &size, float requested, float &chosen) {
  for (int i = 0; i < size.fps_count; ++i) {
    // Intended: The last rate is not always the lowest.
    if (requested - size.fps[i] >= 0 || i == size.fps_count - 1) {
      chosen = size.fps[i];
      return;
    }
  }
}

}  // namespace

bool chooseRate(const _usbfmt_des *formats, int count, const _streaminfo &request, float &chosen) {
  const _usbfmt_des *const format = findFormat(formats, count, request.vcodec);
  if (format == nullptr) return false;
  const _usbres_des *const size = findSize(*format, request.width, request.height);
  if (size == nullptr) return false;
  if (request.framerate > 0) chooseListed(*size, request.framerate, chosen);
  return true;
}

bool findRate(int profile, const _streaminfo &request, float &chosen) {
  _usbfmt_des formats[USBDEV_FORMATS] = {};
  return chooseRate(formats, listProfileFormats(profile, formats), request, chosen);
}

}  // namespace usbdev
