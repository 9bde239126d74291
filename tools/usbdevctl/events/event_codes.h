// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The event codes that the commands pass to the library.
#pragma once

namespace usbdevctl {

constexpr int kLogChangesOnly = 0;  // what is set to what it was is not logged
constexpr int kEventCleared = 4;    // a user unbinds a profile

}  // namespace usbdevctl
