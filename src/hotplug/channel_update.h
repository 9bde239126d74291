// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a start-up stores of the devices that it found.
#pragma once

#include "hotplug/start_up_records.h"

namespace usbdev {

/// Stores the records of the configured channels, and makes the links of those with a profile; a link that
/// gets a new name gets it in its record too. False when the file cannot be opened or stored.
bool updateChannels(ChannelRecords &records);

}  // namespace usbdev
