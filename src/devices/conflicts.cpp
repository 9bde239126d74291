#include "devices/conflicts.h"

#include <usbdev/devices.h>

#include <cstring>

#include "core/host_queries.h"
#include "core/profile_mapping.h"
#include "core/text.h"

namespace usbdev {
namespace {

/// The root port of "1-1.2" is "1-1".
std::size_t rootPortLength(const char *slot) { return std::strcspn(slot, "."); }

bool haveSameRootPort(const char *a, const char *b) {
  const std::size_t length = rootPortLength(a);
  return length == rootPortLength(b) && std::strncmp(a, b, length) == 0;
}

/// A moment as two numbers, as in 20240305 and 81500.
struct Moment {
  int date = 0;
  int time = 0;
};

bool readMoment(const char *text, Moment &moment) {
  char date[128];
  copyText(date, text);
  char *const blank = std::strchr(date, ' ');
  if (blank == nullptr) return false;
  *blank = '\0';
  removeAll(date, '-');
  removeAll(blank + 1, ':');
  moment.date = toInt(date);
  moment.time = toInt(blank + 1);
  return true;
}

/// The first active channel that conflicts with `channel`; -1 for none. False when the file cannot be opened.
bool findConflict(HostAnswers &host, int channel, int *found) {
  *found = kNone;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  ConflictTest test(host, channels[channel].usbslot, channels[channel].vnode);
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = channels[i];
    // Unlike everywhere else, a slot whose switch was never stored counts as switched on here.
    const bool active = other.hasUnparkedCamera() && other.profile != kNone && other.switched_on;
    if (i == channel || !active || !test.conflictsWith(other.usbslot, other.vnode)) continue;
    *found = i;
    break;
  }
  return true;
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
  copyText(own, found);  // a further answer may take its place
  const char *other = host_.bridgeOf(other_vnode);
  return other != nullptr && isSame(own, other);
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

int recomputeConflicts(HostAnswers &host, int *states) {
  {
    ConfigWriter config;
    if (!config) return -1;
    for (int i = 0; i < kChannels; ++i) {
      // 0 and 1 are codes, clear-and-recompute and recompute, and so no channel to be parked behind.
      if (states[i] == -1 || states[i] == 1) continue;
      config.channel(i).set(keys::conflictch, states[i] == 0 ? kNone : states[i]);
      if (states[i] == 0) states[i] = 1;
    }
    if (!config.save()) return -1;
  }
  int found[kChannels];
  for (int i = 0; i < kChannels; ++i) {
    found[i] = kNone;
    if (states[i] == 1) {
      findConflict(host, i, &found[i]);
    } else {
      states[i] = -1;
    }
  }
  ConfigWriter config;
  if (!config) return -1;
  for (int i = 0; i < kChannels; ++i) {
    if (states[i] != -1) config.channel(i).set(keys::conflictch, found[i]);
  }
  return config.save() ? 0 : -1;
}

}  // namespace usbdev

int chkconflict(char *other_slot, const char *slot, bool on_bridge, int other_vnode, const char *bridge_path) {
  if (other_slot == nullptr || slot == nullptr) return 0;
  const bool same_root_port = usbdev::haveSameRootPort(other_slot, slot);
  other_slot[usbdev::rootPortLength(other_slot)] = '\0';  // callers see the root port
  if (usbdev::isOneChannelLimited() || same_root_port) return 1;
  if (!on_bridge || bridge_path == nullptr || isPCIbridge(other_vnode) == 0) return 0;
  char other_path[usbdev::kBridgePathSize];
  if (get_pcibridgePath(other_vnode, other_path) == 0) return 0;
  return usbdev::isSame(other_path, bridge_path) ? 1 : 0;
}

int isElderPf(const char *a, const char *b) {
  usbdev::Moment first;
  usbdev::Moment second;
  if (a == nullptr || b == nullptr || !usbdev::readMoment(a, first) || !usbdev::readMoment(b, second)) return 0;
  if (first.date != second.date) return first.date > second.date ? 1 : 0;
  if (first.time != second.time) return first.time > second.time ? 1 : 0;
  return 2;
}

int getConflictCH(int channel, int *answers) {
  if (!usbdev::isChannel(channel) || answers == nullptr) return -1;
  usbdev::HostAnswers host;
  int found = usbdev::kNone;
  if (!usbdev::findConflict(host, channel, &found)) return -1;
  if (found != usbdev::kNone) answers[channel] = found;
  return 0;
}

int syncConflict(int *states) {
  if (states == nullptr) return -1;
  usbdev::HostAnswers host;
  return usbdev::recomputeConflicts(host, states);
}
