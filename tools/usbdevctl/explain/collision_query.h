// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "explain/collision.h"

namespace usbdevctl {

/// Asks the library why the camera of this channel collides with those of the others, or with that of one of them; runs
/// commands.
Collisions readCollisions(const ChannelRows &rows, int channel, std::optional<int> only = std::nullopt);

}  // namespace usbdevctl
