#include "devices/host_answers.h"

#include <usbdev/devices.h>

#include "core/host_queries.h"

namespace usbdev {

bool HostAnswers::isOneChannelLimited() {
  if (one_channel_limited_ == kNotAsked) one_channel_limited_ = usbdev::isOneChannelLimited() ? 1 : 0;
  return one_channel_limited_ == 1;
}

bool HostAnswers::mayEncode() {
  if (may_encode_ == kNotAsked) validate_hwenc(&may_encode_);
  return may_encode_ == 1;
}

const char *HostAnswers::bridgeOf(int vnode) {
  for (int i = 0; i < bridge_count_; ++i) {
    if (bridges_[i].vnode == vnode) return bridges_[i].known ? bridges_[i].path : nullptr;
  }
  // Should an operation ask about more nodes than it has devices, the last answer makes room.
  if (bridge_count_ < kMostBridges) ++bridge_count_;
  Bridge &bridge = bridges_[bridge_count_ - 1];
  bridge.vnode = vnode;
  bridge.path[0] = '\0';
  bridge.known = isPCIbridge(vnode) == 1 && get_pcibridgePath(vnode, bridge.path) == 1;
  return bridge.known ? bridge.path : nullptr;
}

}  // namespace usbdev
