// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Whether the library has a channel for a device, by the rules of its hotplug handler.
#pragma once

#include <usbdev/records.h>

#include "channel/channels.h"

namespace usbdevctl {

/// For a removal: whether a channel's attached device is at the port. For a plug-in: whether a channel knows the device
/// or can be given to it. The host's own sound cards never have one.
bool hasChannel(const ChannelRows &rows, const _usbdev_des &device);

}  // namespace usbdevctl
