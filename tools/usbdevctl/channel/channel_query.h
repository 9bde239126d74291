// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "channel/channels.h"

namespace usbdevctl {

/// Asks the library for all channels; false when the configuration cannot be read.
bool readChannels(ChannelRows &rows);

}  // namespace usbdevctl
