// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's description of a camera, line by line: the device of its node, and then each device above the last one.
#pragma once

#include <cstddef>

#include "core/lines.h"

namespace usbdev {

constexpr std::size_t kShortCodeSize = 16;

class DeviceWalk : public CommandLines {
 public:
  explicit DeviceWalk(int vnode);
};

/// The vendor and product that lines of a walk name, as in ATTRS{idVendor}=="046d".
struct ProductIds {
  char vendor[kShortCodeSize] = "";
  char product[kShortCodeSize] = "";
  bool has_vendor = false;
  bool has_product = false;

  bool areComplete() const { return has_vendor && has_product; }
  /// Takes what the line names and nothing named before; the line is cut in place.
  void takeFirst(char *line);
  /// Takes what the line names, also in place of what was named before; the line is cut in place.
  void takeLatest(char *line);
};

}  // namespace usbdev
