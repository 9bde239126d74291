// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/event_log.h"

#include <platform/vllog.h>

#include <cstdarg>
#include <cstdio>

namespace usbdev {

void logEvent(EventLevel level, const char *pattern, ...) {
  char line[1024];
  va_list arguments;
  va_start(arguments, pattern);
  std::vsnprintf(line, sizeof line, pattern, arguments);
  va_end(arguments);
  vq_sql_set_log(static_cast<int>(level), line, 0);
}

}  // namespace usbdev
