#include "plain_answers.h"

#include "devices/host_answers.h"

namespace usbdev {

bool HostAnswers::isOneChannelLimited() { return plain_answers.one_channel_limited; }

bool HostAnswers::mayEncode() { return plain_answers.may_encode; }

const char *HostAnswers::bridgeOf(int vnode) {
  const auto found = plain_answers.bridges.find(vnode);
  return found == plain_answers.bridges.end() ? nullptr : found->second.c_str();
}

}  // namespace usbdev
