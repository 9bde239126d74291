// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's answers that one operation needs, each asked when it first matters and not again.
#pragma once

#include <optional>

#include "core/channel_keys.h"
#include "devices/identification.h"

namespace usbdev {

class HostAnswers {
 public:
  /// May the host serve one camera channel only?
  bool isOneChannelLimited();

  /// May the host encode pictures in hardware?
  bool mayEncode();

  /// The path of the PCI device that a node's USB controller sits on; null when no PCI bridge leads to the node.
  const char *bridgeOf(int vnode);

 private:
  struct Bridge {
    int vnode;
    bool known;
    char path[kBridgePathSize];
  };

  std::optional<bool> one_channel_limited_;
  std::optional<bool> may_encode_;
  int bridge_count_ = 0;
  // The nodes of every channel, and of as many new devices.
  static constexpr int kMostBridges = 2 * kChannels;
  Bridge bridges_[kMostBridges];
};

}  // namespace usbdev
