#pragma once

#include "parts/channels.h"
#include "parts/support.h"

namespace usbdevctl {

/// Returns why a camera is not supported, if it is not; runs commands. The library's mark alone would not do: a port
/// that is switched off and on again loses it.
std::optional<Reason> whyUnsupported(const ChannelRow &row);

}  // namespace usbdevctl
