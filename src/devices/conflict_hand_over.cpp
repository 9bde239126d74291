#include <usbdev/devices.h>

#include "core/config.h"
#include "core/local_time.h"
#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/conflicts.h"

namespace usbdev {
namespace {

/// A channel that waits behind the one that goes.
struct Waiting {
  bool waits = false;
  bool may_stream = false;  // attached, bound to a profile, switched on
  int profile = kNone;
  int vnode = kNone;
  char usbslot[128] = "";
  char createtime[kTimeTextSize] = "";
};

/// The channel that takes over.
struct Successor {
  int channel = kNone;
  int profile = kNoSuccessor;
  const char *slot = "";
  int node_count = 0;
  int nodes[kChannels + 1] = {};  // of every choice on the way, in order: a later one without a bridge changes nothing
};

enum class Standing { unreadable, parked, holder };

Standing readWaiting(int channel, Waiting (&waiting)[kChannels]) {
  const ConfigReader config;
  if (!config) return Standing::unreadable;
  if (config.channel(channel).get(keys::conflictch) != kNone) return Standing::parked;
  for (int i = 0; i < kChannels; ++i) {
    const Section &section = config.channel(i);
    if (i == channel || section.get(keys::conflictch) != channel) continue;
    Waiting &other = waiting[i];
    other.waits = true;
    other.profile = section.get(keys::profile);
    other.may_stream = section.get(keys::exists) != 0 && other.profile != kNone && section.get(keys::slot_switch) == 1;
    other.vnode = section.get(keys::vnode);
    section.get(keys::usbslot, other.usbslot);
    section.get(keys::createtime, other.createtime);
  }
  return Standing::holder;
}

/// The first that may stream is chosen until an older one replaces it; of equally old ones the smaller profile wins.
Successor chooseSuccessor(const Waiting (&waiting)[kChannels]) {
  Successor successor;
  char now[kTimeTextSize];
  formatLocalTime(now);
  const char *best_time = now;
  for (int i = 0; i < kChannels; ++i) {
    const Waiting &other = waiting[i];
    if (!other.waits || !other.may_stream) continue;
    if (successor.channel == kNone) {
      successor.channel = i;
      successor.profile = other.profile;
      successor.nodes[successor.node_count++] = other.vnode;
      successor.slot = other.usbslot;  // meant to stay the first choice's, whoever replaces it
    }
    const int comparison = isElderPf(best_time, other.createtime);
    if (comparison == 0 || (comparison == 2 && other.profile >= successor.profile)) continue;
    if (successor.channel != i) successor.nodes[successor.node_count++] = other.vnode;
    successor.channel = i;
    successor.profile = other.profile;
    best_time = other.createtime;
  }
  return successor;
}

bool writeHandOver(int channel, int value, int mode, bool one_channel_host, const Successor &successor,
                   const Waiting (&waiting)[kChannels]) {
  const ConfigWriter config;
  if (!config) return false;
  if (one_channel_host) {
    config.channel(successor.channel).set(keys::conflictch, value);
    for (int i = 0; i < kChannels; ++i) {
      const bool parked = waiting[i].waits || (mode == kHandOverAndPark && i == channel);
      if (parked && i != successor.channel) config.channel(i).set(keys::conflictch, successor.channel);
    }
    return true;
  }
  for (int i = 0; i < kChannels; ++i) {
    if (waiting[i].waits) config.channel(i).set(keys::conflictch, value);
  }
  if (successor.channel != kNone) config.channel(channel).set(keys::conflictch, successor.channel);
  return true;
}

/// Parks every other camera that conflicts with the successor behind it.
int parkBehind(HostAnswers &host, const Successor &successor) {
  struct Camera {
    bool present = false;
    int vnode = kNone;
    char usbslot[128] = "";
  } cameras[kChannels];
  {
    const ConfigReader config;
    if (!config) return -1;
    for (int i = 0; i < kChannels; ++i) {
      if (i == successor.channel) continue;
      const Section &section = config.channel(i);
      cameras[i].vnode = section.get(keys::vnode);
      cameras[i].present = section.get(keys::exists) != 0 && cameras[i].vnode != kNone;
      section.get(keys::usbslot, cameras[i].usbslot);
    }
  }
  ConflictTest test(host, successor.slot);
  for (int i = successor.node_count - 1; i >= 0; --i) test.addNode(successor.nodes[i]);
  bool parked[kChannels];
  for (int i = 0; i < kChannels; ++i) {
    parked[i] = cameras[i].present && test.conflictsWith(cameras[i].usbslot, cameras[i].vnode);
  }
  const ConfigWriter config;
  if (!config) return -1;
  for (int i = 0; i < kChannels; ++i) {
    if (parked[i]) config.channel(i).set(keys::conflictch, successor.channel);
  }
  return 0;
}

}  // namespace

int handOverConflict(HostAnswers &host, int channel, int value, int mode, int *profile) {
  *profile = kNoSuccessor;
  Waiting waiting[kChannels];
  switch (readWaiting(channel, waiting)) {
    case Standing::unreadable:
      return -1;
    case Standing::parked:  // it holds nobody
      return 0;
    case Standing::holder:
      break;
  }
  const bool chooses = mode == kHandOver || mode == kHandOverOnPlug || mode == kHandOverAndPark;
  const Successor successor = chooses ? chooseSuccessor(waiting) : Successor{};
  *profile = successor.profile;
  const bool one_channel_host =
      (mode == kHandOver || mode == kHandOverAndPark) && successor.channel != kNone && host.isOneChannelLimited();
  if (!writeHandOver(channel, value, mode, one_channel_host, successor, waiting)) return -1;
  return successor.channel == kNone ? 0 : parkBehind(host, successor);
}

int followUpConflict(HostAnswers &host, int channel, bool came, int stored_conflict, int parked_behind) {
  int successor = kNoSuccessor;
  if (!came) {
    if (stored_conflict == kNone) handOverConflict(host, channel, kNone, kHandOver, &successor);
  } else if (parked_behind != kNone && host.isOneChannelLimited()) {
    handOverConflict(host, channel, parked_behind, kHandOverOnPlug, &successor);
  }
  return successor;
}

}  // namespace usbdev

int updateConflict(int channel, int value, int mode, int *profile) {
  if (!usbdev::isChannel(channel) || profile == nullptr) return -1;
  usbdev::HostAnswers host;
  return usbdev::handOverConflict(host, channel, value, mode, profile);
}
