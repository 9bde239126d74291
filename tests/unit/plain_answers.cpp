// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "plain_answers.h"

#include "core/text.h"
#include "devices/host_answers.h"

namespace usbdev {

bool HostAnswers::isOneChannelLimited() { return plain_answers.one_channel_limited; }

bool HostAnswers::mayEncode() { return plain_answers.may_encode; }

// Each answer takes the place of the one before, as it may in the library.
const char *HostAnswers::bridgeOf(int vnode) {
  const auto found = plain_answers.bridges.find(vnode);
  if (found == plain_answers.bridges.end()) return nullptr;
  bridge_count_ = 1;
  copyText(bridges_[0].path, found->second.c_str());
  return bridges_[0].path;
}

}  // namespace usbdev
