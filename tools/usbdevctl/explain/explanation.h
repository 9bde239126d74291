// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why a camera does not stream: everything that keeps it from that.
#pragma once

#include <optional>
#include <vector>

#include "explain/reason.h"
#include "output/json.h"

namespace usbdevctl {

using Reasons = std::vector<Reason>;

/// Nothing for a camera that nothing keeps from streaming. The caller finds out why it is not supported,
/// because that takes commands.
Reasons explain(const ChannelRows &rows, int channel, const Collisions &collisions,
                const std::optional<Reason> &unsupported);

std::string explanationText(const Camera &camera, const Reasons &reasons);
Json explanationJson(const Camera &camera, const Reasons &reasons);

}  // namespace usbdevctl
