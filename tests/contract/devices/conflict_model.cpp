// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "conflict_model.h"

#include <algorithm>
#include <set>
#include <utility>

namespace contract {

namespace {

std::string rootPort(const std::string &slot) { return slot.substr(0, slot.find('.')); }

long number(std::string text, char separator) {
  text.erase(std::remove(text.begin(), text.end(), separator), text.end());
  return strtol(text.c_str(), nullptr, 10);
}

// Date and time of a text that has both.
bool readTime(const std::string &text, std::pair<long, long> &time) {
  const size_t blank = text.find(' ');
  if (blank == std::string::npos) return false;
  time = {number(text.substr(0, blank), '-'), number(text.substr(blank + 1), ':')};
  return true;
}

// Negative when a is before b, and when one of them is not a time.
int compareTimes(const std::string &a, const std::string &b) {
  std::pair<long, long> first;
  std::pair<long, long> second;
  if (!readTime(a, first) || !readTime(b, second) || first < second) return -1;
  return first == second ? 0 : 1;
}

}  // namespace

ConflictModel::ConflictModel(const FakeConfig::Values &file, std::map<int, std::string> bridges, bool one_channel_host,
                             std::string now)
    : bridges_(std::move(bridges)), one_channel_host_(one_channel_host), now_(std::move(now)) {
  for (size_t i = 0; i < channels_.size(); ++i) {
    const auto text = [&](const char *key, const std::string &otherwise) {
      const auto found = file.find("ch" + std::to_string(i) + "/" + key);
      return found == file.end() ? otherwise : found->second;
    };
    const auto number = [&](const char *key, int otherwise) { return std::stoi(text(key, std::to_string(otherwise))); };
    channels_[i] = {number("exists", 0) != 0,  number("profile", -1),          number("conflictch", -1),
                    number("video/vnode", -1), number("slot_switch", -1) == 1, number("slot_switch", 1) == 1,
                    text("usbslot", ""),       text("createtime", "")};
  }
}

std::string ConflictModel::bridgeOf(int node) const {
  const auto found = bridges_.find(node);
  return found == bridges_.end() ? "" : found->second;
}

bool ConflictModel::conflict(const Channel &other, const std::string &slot, const std::string &bridge) const {
  if (one_channel_host_ || rootPort(other.slot) == rootPort(slot)) return true;
  return !bridge.empty() && bridgeOf(other.node) == bridge;
}

void ConflictModel::park(int channel, int behind) {
  channels_[static_cast<size_t>(channel)].conflict = behind;
  writes_.push_back("ch" + std::to_string(channel) + "/conflictch=" + std::to_string(behind));
}

int ConflictModel::handOver(int channel, int value, int mode) {
  if (channels_[static_cast<size_t>(channel)].conflict != -1) return 99;
  std::set<int> waiting;
  int successor = -1;
  int profile = 99;
  std::string slot;
  std::string bridge;
  std::string best = now_;
  const auto choose = [&](int i, const Channel &chosen) {
    successor = i;
    profile = chosen.profile;
    if (!bridgeOf(chosen.node).empty()) bridge = bridgeOf(chosen.node);
  };
  for (int i = 0; i < 10; ++i) {
    const Channel &other = channels_[static_cast<size_t>(i)];
    if (i == channel || other.conflict != channel) continue;
    waiting.insert(i);
    const bool chooses = mode == 0 || mode == 1 || mode == 4;
    if (!chooses || !other.mayStream()) continue;
    if (successor == -1) {
      choose(i, other);
      slot = other.slot;
    }
    const int age = compareTimes(best, other.since);
    if (age < 0 || (age == 0 && other.profile >= profile)) continue;
    choose(i, other);
    best = other.since;
  }

  if (one_channel_host_ && (mode == 0 || mode == 4) && successor != -1) {
    park(successor, value);
    waiting.erase(successor);
    if (mode == 4) waiting.insert(channel);
    for (const int i : waiting) park(i, successor);
  } else {
    for (const int i : waiting) park(i, value);
    if (successor != -1) park(channel, successor);
  }
  for (int i = 0; i < 10 && successor != -1; ++i) {
    const Channel &other = channels_[static_cast<size_t>(i)];
    if (i != successor && other.hasCamera() && conflict(other, slot, bridge)) park(i, successor);
  }
  return profile;
}

int ConflictModel::firstConflict(int channel) const {
  const Channel &own = channels_[static_cast<size_t>(channel)];
  for (int i = 0; i < 10; ++i) {
    const Channel &other = channels_[static_cast<size_t>(i)];
    const bool active =
        other.hasCamera() && other.profile != -1 && other.conflict == -1 && other.switched_on_by_default;
    if (i != channel && active && conflict(other, own.slot, bridgeOf(own.node))) return i;
  }
  return -1;
}

ConflictModel::States ConflictModel::recompute(States states) {
  for (size_t i = 0; i < states.size(); ++i) {
    if (states[i] == -1 || states[i] == 1) continue;
    park(static_cast<int>(i), states[i] == 0 ? -1 : states[i]);
    states[i] = states[i] == 0 ? 1 : -1;
  }
  States found;
  for (int i = 0; i < 10; ++i) found[static_cast<size_t>(i)] = firstConflict(i);
  for (size_t i = 0; i < states.size(); ++i) {
    if (states[i] == 1) park(static_cast<int>(i), found[i]);
  }
  return states;
}

}  // namespace contract
