// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "text.h"
#include "world.h"

namespace model {

namespace {

std::string rootPort(const std::string &slot) { return slot.substr(0, slot.find('.')); }

bool mayTakeOver(const Channel &channel) {
  return channel.exists() && channel.hasProfile() && channel.number("slot_switch", -1) == 1;
}

}  // namespace

bool World::conflicts(const std::string &other_slot, const std::string &slot, const std::string &bridge,
                      int other_vnode) const {
  if (host.one_channel) return true;
  if (rootPort(other_slot) == rootPort(slot)) return true;
  return !bridge.empty() && host.bridgeOf(other_vnode) == bridge;
}

int World::chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode,
                       const char *bridge_path) const {
  const std::string other = other_slot;
  rootPort(other).copy(other_slot, other.size());
  other_slot[rootPort(other).size()] = '\0';
  return conflicts(other, slot, on_bridge ? bridge_path : "", other_vnode) ? 1 : 0;
}

// 0 = a is earlier or one of them is not a moment, 1 = a is later, 2 = they are the same.
int World::isElderPf(const char *a, const char *b) {
  const std::string one = a;
  const std::string other = b;
  if (!contains(one, " ") || !contains(other, " ")) return 0;
  return one == other ? 2 : one > other ? 1 : 0;
}

// The slot is that of the first that could take over, even if an older one does; a bridge that was found stays.
struct World::Successor {
  int channel = -1;
  int profile = 99;
  std::string slot;
  std::string bridge;
};

std::vector<int> World::waitingFor(int channel) const {
  std::vector<int> waiting;
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (n != channel && channels[n].conflict() == channel) waiting.push_back(n);
  }
  return waiting;
}

World::Successor World::chooseSuccessor(const std::vector<int> &waiting, int mode) const {
  Successor successor;
  if (mode != 0 && mode != 1 && mode != 4) return successor;
  std::string oldest = now;
  for (const int n : waiting) {
    const Channel &channel = channels[n];
    if (!mayTakeOver(channel)) continue;
    const auto choose = [&] {
      successor.channel = n;
      successor.profile = channel.profile();
      const std::string bridge = host.bridgeOf(channel.vnode());
      if (!bridge.empty()) successor.bridge = bridge;
    };
    if (successor.channel == -1) {
      successor.slot = channel.slot();
      choose();
    }
    const int order = isElderPf(oldest.c_str(), channel.text("createtime").c_str());
    if (order == 0 || (order == 2 && channel.profile() >= successor.profile)) continue;
    choose();
    oldest = channel.text("createtime");
  }
  return successor;
}

// Everything that shares the port or the bridge of the successor waits for it.
void World::park(const Successor &successor) {
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    Channel &channel = channels[n];
    if (n == successor.channel || !channel.exists() || !channel.hasVideo()) continue;
    if (conflicts(channel.slot(), successor.slot, successor.bridge, channel.vnode())) {
      channel.set("conflictch", successor.channel);
    }
  }
}

int World::updateConflict(int channel, int value, int mode, int *profile) {
  if (channel < 0 || channel > 9) return -1;
  *profile = 99;
  if (channels[channel].isParked()) return 0;
  const std::vector<int> waiting = waitingFor(channel);
  const Successor successor = chooseSuccessor(waiting, mode);
  *profile = successor.profile;
  if (host.one_channel && (mode == 0 || mode == 4) && successor.channel != -1) {
    for (const int n : waiting) channels[n].set("conflictch", n == successor.channel ? value : successor.channel);
    if (mode == 4) channels[channel].set("conflictch", successor.channel);
  } else {
    for (const int n : waiting) channels[n].set("conflictch", value);
    if (successor.channel != -1) channels[channel].set("conflictch", successor.channel);
  }
  if (successor.channel != -1) park(successor);
  return 0;
}

int World::getConflictCH(int channel, int *answers) const {
  if (channel < 0 || channel > 9) return -1;
  const Channel &own = channels[channel];
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Channel &other = channels[n];
    if (n == channel || !other.exists() || !other.hasProfile() || !other.hasVideo() || other.isParked()) continue;
    if (other.number("slot_switch", 1) != 1) continue;
    if (!conflicts(other.slot(), own.slot(), host.bridgeOf(own.vnode()), other.vnode())) continue;
    answers[channel] = n;
    return 0;
  }
  return 0;
}

// A state of 0 clears and recomputes, 1 recomputes, -1 leaves alone; any other is stored.
int World::syncConflict(int *states) {
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (states[n] == -1 || states[n] == 1) continue;
    channels[n].set("conflictch", states[n] == 0 ? -1 : states[n]);
    if (states[n] == 0) states[n] = 1;
  }
  int answers[USBDEV_CHANNELS];
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    answers[n] = -1;
    if (states[n] == 1) {
      getConflictCH(n, answers);
    } else {
      states[n] = -1;
    }
  }
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if (states[n] != -1) channels[n].set("conflictch", answers[n]);
  }
  return 0;
}

}  // namespace model
