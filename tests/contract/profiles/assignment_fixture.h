// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera on channel 3 that a profile may be assigned to.
#pragma once

#include <string>

#include "contract_test.h"
#include "stream_links.h"

namespace contract {

class AProfile : public ContractTest {
 protected:
  AProfile() {
    host.commands.prints(kUuidCommand, kUuid);
    host.chance.random = 4711;
    camera(3, "3-1.2", 5).name("HD Webcam");
  }

  HostChannel camera(int channel, const std::string &slot, int vnode) {
    return host.channel(channel).attached(slot, vnode);
  }

  int assign(const std::string &slot, int profile) {
    std::string text = slot;
    return vl_set_usbchn_profile(text.data(), profile);
  }

  std::string mark(int channel) { return host.channel(channel).get("conflictch"); }
};

}  // namespace contract
