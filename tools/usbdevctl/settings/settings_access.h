// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of the host's cameras, read and changed through the library.
#pragma once

#include "settings/steps.h"

namespace usbdevctl {

/// The settings of a profile that a camera has; nothing where they cannot be read.
std::optional<ProfileSettings> readProfileSettings(int profile);

/// What the planning asks of a camera that is attached; runs commands.
CameraFacts readFacts(const ChannelRows &rows, const Camera &camera);

/// Applies the steps in their order, up to the first that fails; how many were done.
std::size_t applySteps(const std::vector<Step> &steps);

}  // namespace usbdevctl
