// From a profile id to the channel that serves it.
#pragma once

#include "core/channel_keys.h"

namespace usbdev {

inline bool isProfile(int profile) { return profile >= 0 && profile < kProfiles; }
inline bool isChannel(int channel) { return channel >= 0 && channel < kChannels; }

}  // namespace usbdev
