// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/local_time.h"

#include <ctime>

#include "core/text.h"

namespace usbdev {

void formatLocalTime(char (&out)[kTimeTextSize]) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  formatText(out, "%d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
             local.tm_min, local.tm_sec);
}

}  // namespace usbdev
