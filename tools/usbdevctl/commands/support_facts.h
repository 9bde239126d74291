#pragma once

#include "parts/support.h"

namespace usbdevctl {

/// Asks the library what it judges a camera's support by; runs commands.
SupportFacts readSupportFacts(const ChannelRow &row);

}  // namespace usbdevctl
