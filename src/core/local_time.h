// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The moment as the channel file stores it.
#pragma once

#include <cstddef>

namespace usbdev {

constexpr std::size_t kTimeTextSize = 128;

/// Writes the local time as in 2024-03-05 08:15:00.
void formatLocalTime(char (&out)[kTimeTextSize]);

}  // namespace usbdev
