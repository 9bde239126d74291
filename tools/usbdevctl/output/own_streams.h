// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Standard output and standard error are for the program and its library; what the commands print that the library runs
// is not shown.
#pragma once

namespace usbdevctl {

/// Moves both streams to descriptors that commands do not inherit, and leaves them /dev/null in the old ones' place.
/// Call it before anything is printed; where it returns false, no command may run. A sanitizer's report is not shown
/// either, unless its options have a log_path.
bool keepStreamsFromCommands();

}  // namespace usbdevctl
