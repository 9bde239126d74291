// From a profile id to the channel that serves it.
#pragma once

#include "core/channel_keys.h"

namespace usbdev {

inline bool isProfile(int profile) { return profile >= 0 && profile < kProfiles; }
inline bool isChannel(int channel) { return channel >= 0 && channel < kChannels; }

/// The first channel that holds a profile; kNone when none does, the id is none or the file cannot be opened.
int channelOfProfile(int profile);

}  // namespace usbdev
