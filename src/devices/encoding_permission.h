// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// May this host encode pictures in hardware?
#pragma once

namespace usbdev {

/// False if anything that encoding needs is missing.
bool mayEncode();

/// Is the driver of the host's GPU installed?
bool hasReadyGpu();

}  // namespace usbdev
