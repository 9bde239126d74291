// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of the host's cameras, read and changed through the library.
#pragma once

#include "command_line/exit_status.h"
#include "settings/steps.h"

namespace usbdevctl {

/// The settings of a profile that a camera has; nothing where they cannot be read.
std::optional<ProfileSettings> readProfileSettings(int profile);

/// What the planning asks of a camera that is attached; runs commands.
CameraFacts readFacts(const ChannelRows &rows, const Camera &camera);

struct Applied {
  std::size_t steps = 0;
  ExitStatus links = ExitStatus::ok;  // a failure if links on the disk did not follow these steps
};

/// Applies the steps in their order, up to the first that fails.
Applied applySteps(const std::vector<Step> &steps);

}  // namespace usbdevctl
