// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "channel/channels.h"
#include "explain/support.h"

namespace usbdevctl {

/// Returns why a camera is not supported, if it is not; runs commands. The library's mark alone would not do: a port
/// that is switched off and on again loses it.
std::optional<Reason> whyUnsupported(const ChannelRow &row);

}  // namespace usbdevctl
