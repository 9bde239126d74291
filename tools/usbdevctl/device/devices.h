// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The devices of the channels, as the application lists them.
#pragma once

#include <usbdev/records.h>

#include <array>

#include "channel/channels.h"
#include "output/fields.h"

namespace usbdevctl {

/// A row for each channel with a device; its trouble is that of the channels' table.
FieldRows deviceFields(const std::array<_usbdev_entry, USBDEV_CHANNELS> &entries, const ChannelRows &channels);

}  // namespace usbdevctl
