// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why a camera does not stream: everything that keeps it from that.
#pragma once

#include <optional>

#include "explain/collision.h"
#include "reason/reason.h"

namespace usbdevctl {

/// Nothing for a camera that nothing keeps from streaming. The caller finds out what the machine has against it and why
/// it is not supported, because that takes commands.
Reasons explain(const ChannelRows &rows, int channel, const Collisions &collisions,
                const std::optional<Reason> &unsupported, const Reasons &machine = {});

/// The lines below the camera's own: what keeps it from streaming, then what its user should know.
std::string reasonsText(const Reasons &reasons);

std::string explanationText(const Camera &camera, const Reasons &reasons);
Json explanationJson(const Camera &camera, const Reasons &reasons);

/// What `channels` shows of a channel, with its reasons; a free channel has none, and does not stream.
Json channelExplanationJson(const Fields &shown, ChannelState state, const Reasons &reasons);

}  // namespace usbdevctl
