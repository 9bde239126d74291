#include <usbdev/devices.h>

#include "core/local_time.h"
#include "core/profile_mapping.h"
#include "devices/conflicts.h"

namespace usbdev {
namespace {

/// The channel that takes over.
struct Successor {
  int channel = kNone;
  int profile = kNoSuccessor;
  const char *slot = "";
  int node_count = 0;
  int nodes[kChannels + 1];  // of every choice on the way, in order: a later one without a bridge changes nothing
};

/// A channel that waits may follow when it is attached, bound to a profile and switched on.
bool mayStream(const ChannelSnapshot &channel) {
  return channel.exists != 0 && channel.profile != kNone && channel.slot_switch == 1;
}

/// The first that may stream is chosen until an older one replaces it; of equally old ones the smaller profile wins.
Successor chooseSuccessor(const ChannelSnapshots &channels, const ChannelMarks &waiting) {
  Successor successor;
  char now[kTimeTextSize];
  formatLocalTime(now);
  const char *best_time = now;
  for (int i = 0; i < kChannels; ++i) {
    const ChannelSnapshot &other = channels[i];
    if (!waiting[i] || !mayStream(other)) continue;
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

bool writeHandOver(int channel, int value, const Successor &successor, const ChannelMarks &waiting) {
  ConfigWriter config;
  if (!config) return false;
  writeParked(config, waiting, value);
  if (successor.channel != kNone) config.channel(channel).set(keys::conflictch, successor.channel);
  return config.save();
}

/// On a host that serves one channel only all others wait behind the successor.
bool writeHandOverOfOnlyChannel(int value, const Successor &successor, const ChannelMarks &waiting) {
  ConfigWriter config;
  if (!config) return false;
  config.channel(successor.channel).set(keys::conflictch, value);
  writeParked(config, waiting, successor.channel);
  return config.save();
}

/// Parks every other camera that conflicts with the successor behind it.
int parkBehind(HostAnswers &host, const Successor &successor) {
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return -1;
  const int last = successor.node_count - 1;
  ConflictTest test(host, successor.slot, successor.nodes[last]);
  for (int i = last - 1; i >= 0; --i) test.addNode(successor.nodes[i]);
  ChannelMarks conflicting;
  markConflicts(test, channels, successor.channel, conflicting);
  ConfigWriter config;
  if (!config) return -1;
  writeParked(config, conflicting, successor.channel);
  return config.save() ? 0 : -1;
}

}  // namespace

int handOverConflict(HostAnswers &host, int channel, int value, int mode, int *profile) {
  *profile = kNoSuccessor;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return -1;
  if (channels[channel].conflictch != kNone) return 0;  // it is parked and holds nobody
  ChannelMarks waiting;
  for (int i = 0; i < kChannels; ++i) waiting[i] = channels[i].conflictch == channel;

  const bool chooses = mode == kHandOver || mode == kHandOverOnPlug || mode == kHandOverAndPark;
  const Successor successor = chooses ? chooseSuccessor(channels, waiting) : Successor{};
  *profile = successor.profile;
  const bool only_one = mode != kHandOverOnPlug && successor.channel != kNone && host.isOneChannelLimited();
  if (only_one) waiting[successor.channel] = false;
  if (only_one && mode == kHandOverAndPark) waiting[channel] = true;
  const bool written = only_one ? writeHandOverOfOnlyChannel(value, successor, waiting)
                                : writeHandOver(channel, value, successor, waiting);
  if (!written) return -1;
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
