// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/conflicts.h"

#include <cstring>

#include "core/text.h"

namespace usbdev {
namespace {

/// The root port of "1-1.2" is "1-1".
std::size_t rootPortLength(const char *slot) { return std::strcspn(slot, "."); }

bool haveSameRootPort(const char *a, const char *b) {
  const std::size_t length = rootPortLength(a);
  return length == rootPortLength(b) && std::strncmp(a, b, length) == 0;
}

bool writeTasks(ConflictTasks &tasks) {
  ConfigWriter config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    // Intended: 0 and 1 are codes, not channels.
    if (tasks[i] == ConflictTask::leave || tasks[i] == ConflictTask::recompute) continue;
    const bool clears = tasks[i] == ConflictTask::clear_and_recompute;
    config.channel(i).set(keys::conflictch, clears ? kNone : static_cast<int>(tasks[i]));
    if (clears) tasks[i] = ConflictTask::recompute;
  }
  return config.save();
}

}  // namespace

ConflictTest::ConflictTest(HostAnswers &host, const char *slot, int vnode) : host_(host), slot_(slot) {
  addNode(vnode);
}

const char *ConflictTest::ownBridge() {
  for (int i = 0; i < node_count_; ++i) {
    if (const char *path = host_.bridgeOf(nodes_[i])) return path;
  }
  return nullptr;
}

bool ConflictTest::conflictsWith(const char *other_slot, int other_vnode) {
  if (haveSameRootPort(other_slot, slot_) || host_.isOneChannelLimited()) return true;
  const char *found = ownBridge();
  if (found == nullptr) return false;
  char own[kBridgePathSize];
  copyText(own, found);  // another answer may overwrite it
  const char *other = host_.bridgeOf(other_vnode);
  return other != nullptr && isSame(own, other);
}

bool conflictsOnBridge(HostAnswers &host, char *other_slot, const char *slot, int other_vnode, const char *own_bridge) {
  const bool same_root_port = haveSameRootPort(other_slot, slot);
  // Intended: The caller's text is cut to the root port.
  other_slot[rootPortLength(other_slot)] = '\0';
  if (host.isOneChannelLimited() || same_root_port) return true;
  const char *const other = own_bridge == nullptr ? nullptr : host.bridgeOf(other_vnode);
  return other != nullptr && isSame(other, own_bridge);
}

void markConflicts(ConflictTest &test, const ChannelSnapshots &channels, int own, ChannelMarks &conflicting) {
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = channels[i];
    conflicting[i] = i != own && other.hasCamera() && test.conflictsWith(other.usbslot, other.vnode);
  }
}

void writeParked(const OpenConfig &config, const ChannelMarks &parked, int behind) {
  for (int i = 0; i < kChannels; ++i) {
    if (parked[i]) config.channel(i).set(keys::conflictch, behind);
  }
}

bool findConflict(HostAnswers &host, int channel, int &found) {
  found = kNone;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  ConflictTest test(host, channels[channel].usbslot, channels[channel].vnode);
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = channels[i];
    // Intended: A switch that was never stored is on here.
    const bool active = other.hasUnparkedCamera() && other.profile != kNone && other.switched_on;
    if (i == channel || !active || !test.conflictsWith(other.usbslot, other.vnode)) continue;
    found = i;
    break;
  }
  return true;
}

void takeTaskCodes(const int *codes, ConflictTasks &tasks) {
  for (int i = 0; i < kChannels; ++i) tasks[i] = ConflictTask{codes[i]};
}

void giveTaskCodes(const ConflictTasks &tasks, int *codes) {
  for (int i = 0; i < kChannels; ++i) codes[i] = static_cast<int>(tasks[i]);
}

bool recomputeConflicts(HostAnswers &host, ConflictTasks &tasks) {
  if (!writeTasks(tasks)) return false;
  int found[kChannels];
  for (int i = 0; i < kChannels; ++i) {
    if (tasks[i] == ConflictTask::recompute) {
      findConflict(host, i, found[i]);
    } else {
      tasks[i] = ConflictTask::leave;
    }
  }
  ConfigWriter config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    if (tasks[i] != ConflictTask::leave) config.channel(i).set(keys::conflictch, found[i]);
  }
  return config.save();
}

}  // namespace usbdev
