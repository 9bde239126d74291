// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the machine has against the cameras of the channels, and which of its cameras have no channel.
#pragma once

#include <string>
#include <vector>

#include "channel/channels.h"

namespace usbdevctl {

/// Sets the most important trouble of each channel's camera. A simulated host has none.
void addTroubles(ChannelRows &rows, const Machine &machine);

/// The ports whose camera is not the attached device of a channel.
std::vector<std::string> portsWithoutChannel(const ChannelRows &rows, const Machine &machine);

/// Why such a camera has no channel.
Reasons withoutChannel(const std::string &port, const Machine &machine);

/// The camera and the reason, as one line.
std::string withoutChannelText(const std::string &port, const Machine &machine);

/// 3-1  "USB Camera"
std::string machineCameraText(const std::string &port, const Machine &machine);

}  // namespace usbdevctl
