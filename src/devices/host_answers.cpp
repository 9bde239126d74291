// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/host_answers.h"

#include "core/host_queries.h"
#include "devices/encoding_permission.h"

namespace usbdev {

bool HostAnswers::isOneChannelLimited() {
  if (!one_channel_limited_) one_channel_limited_ = usbdev::isOneChannelLimited();
  return *one_channel_limited_;
}

bool HostAnswers::mayEncode() {
  if (!may_encode_) may_encode_ = usbdev::mayEncode();
  return *may_encode_;
}

const char *HostAnswers::bridgeOf(int vnode) {
  for (int i = 0; i < bridge_count_; ++i) {
    if (bridges_[i].vnode == vnode) return bridges_[i].known ? bridges_[i].path : nullptr;
  }
  // If an operation asks about more nodes than there is room for, the last answer is replaced.
  if (bridge_count_ < kMostBridges) ++bridge_count_;
  Bridge &bridge = bridges_[bridge_count_ - 1];
  bridge.vnode = vnode;
  bridge.known = isBehindPciBridge(vnode) && findPciBridge(vnode, bridge.path);
  return bridge.known ? bridge.path : nullptr;
}

}  // namespace usbdev
