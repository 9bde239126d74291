// Which of the channels that wait for another one takes over: the rules, on a snapshot of the ten channels.
#pragma once

#include "devices/conflicts.h"

namespace usbdev {

struct Successor {
  int channel = kNone;
  int profile = kNone;
  const char *slot = "";  // points into the snapshot
  int node_count = 0;
  int nodes[kChannels + 1];  // of every choice on the way, in order: a later one without a bridge changes nothing
};

/// The first that may stream is chosen until one with an earlier profile replaces it; of equally old ones the smaller
/// profile wins. `now`: the moment as the channel file stores it.
Successor chooseSuccessor(const ChannelSnapshots &channels, const ChannelMarks &waiting, const char *now);

}  // namespace usbdev
