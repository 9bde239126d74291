// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channel a device that is plugged in or removed belongs to: the rules, on a snapshot of the ten channels.
#pragma once

#include <usbdev/records.h>

#include "core/channel_snapshot.h"

namespace usbdev {

struct ChannelChoice {
  int channel = kNone;
  bool exact_match = false;      // the channel already has this device
  int replaced = kNone;          // the channel whose camera was displaced by another one in its port
  int profile = kNone;           // what the caller gets
  const char *rename = nullptr;  // an audio card takes this name, its channel's
};

/// Plug-in: the channel that knows the port, else the first free one.
ChannelChoice chooseForPlugged(const ChannelSnapshots &channels, const _usbdev_des &device);

/// Removal: the attached channel in the port.
ChannelChoice chooseForRemoved(const ChannelSnapshots &channels, const _usbdev_des &device);

}  // namespace usbdev
