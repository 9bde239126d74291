// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's event log, which its users read.
#pragma once

namespace usbdev {

enum class EventLevel { information = 0, warning = 1 };

/// Adds one line to the event log, cut at 1023 bytes.
__attribute__((format(printf, 2, 3))) void logEvent(EventLevel level, const char *pattern, ...);

}  // namespace usbdev
