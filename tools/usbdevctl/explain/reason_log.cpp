// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/reason_log.h"

#include <platform/vllog.h>

namespace usbdevctl {

namespace {

constexpr int kWarningLevel = 1;

}  // namespace

std::string reasonEvent(const Camera &camera, const Reason &reason) {
  const std::string device = camera.row.device.empty() ? "" : " " + camera.row.device;
  return "Camera[" + camera.row.slot + device + "]: " + sentences(reason);
}

bool logReasons(const Camera &camera, const Reasons &reasons) {
  bool written = true;
  for (const Reason &reason : reasons) {
    if (reason.hinders) written = vq_sql_set_log(kWarningLevel, reasonEvent(camera, reason).c_str(), 0) == 0 && written;
  }
  return written;
}

}  // namespace usbdevctl
