// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One channel of the configuration: what it holds before a call, and what it holds after.
#pragma once

#include <string>

#include "fake_config.h"

namespace contract {

class HostChannel {
 public:
  HostChannel(FakeConfig &config, int number) : config_(config), section_("ch" + std::to_string(number)) {}

  HostChannel &exists(int value) { return set("exists", value); }
  HostChannel &profile(int value) { return set("profile", value); }
  HostChannel &slot(const std::string &value) { return set("usbslot", value); }
  HostChannel &name(const std::string &value) { return set("devname", value); }
  HostChannel &slotSwitch(int value) { return set("slot_switch", value); }
  HostChannel &conflict(int value) { return set("conflictch", value); }
  HostChannel &createTime(const std::string &value) { return set("createtime", value); }
  HostChannel &profileName(const std::string &value) { return set("profilename", value); }
  // A camera in a port; one that may stream serves a profile too.
  HostChannel &attached(const std::string &port, int node) { return exists(1).slot(port).vnode(node); }
  HostChannel &streaming(int its_profile) { return profile(its_profile).slotSwitch(1).conflict(-1); }
  HostChannel &vnode(int value) { return set("video/vnode", value); }
  HostChannel &vcodec(int value) { return set("video/vcodec", value); }
  HostChannel &anode(int value) { return set("audio/anode", value); }

  // Any key, as "devname" or "video/vnode".
  HostChannel &set(const std::string &key, int value) {
    config_.set(path(key), value);
    return *this;
  }
  HostChannel &set(const std::string &key, const std::string &value) {
    config_.set(path(key), value);
    return *this;
  }

  // What the channel holds now, as text; "(none)" where the key is missing.
  std::string get(const std::string &key) const {
    return config_.has(path(key)) ? config_.text(path(key)) : std::string("(none)");
  }

 private:
  std::string path(const std::string &key) const { return section_ + "/" + key; }

  FakeConfig &config_;
  std::string section_;
};

}  // namespace contract
