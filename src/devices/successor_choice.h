// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

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

/// Chooses, of those that may stream, the one whose creation time is the earliest; of equal times the smaller profile
/// counts. `now`: the moment as the channel file stores it.
Successor chooseSuccessor(const ChannelSnapshots &channels, const ChannelMarks &waiting, const char *now);

}  // namespace usbdev
