// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/conflict_hand_over.h"

#include "core/local_time.h"
#include "devices/conflicts.h"
#include "devices/successor_choice.h"

namespace usbdev {
namespace {

bool writeHandOver(int channel, int parked_behind, const Successor &successor, const ChannelMarks &waiting) {
  ConfigWriter config;
  if (!config) return false;
  writeParked(config, waiting, parked_behind);
  if (successor.channel != kNone) config.channel(channel).set(keys::conflictch, successor.channel);
  return config.save();
}

/// On a host that serves one channel only all others wait for the successor.
bool writeHandOverOfOnlyChannel(int parked_behind, const Successor &successor, const ChannelMarks &waiting) {
  ConfigWriter config;
  if (!config) return false;
  config.channel(successor.channel).set(keys::conflictch, parked_behind);
  writeParked(config, waiting, successor.channel);
  return config.save();
}

/// Makes every other camera that conflicts with the successor wait for it.
bool parkBehind(HostAnswers &host, const Successor &successor) {
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  const int last = successor.node_count - 1;
  ConflictTest test(host, successor.slot, successor.nodes[last]);
  for (int i = last - 1; i >= 0; --i) test.addNode(successor.nodes[i]);
  ChannelMarks conflicting;
  markConflicts(test, channels, successor.channel, conflicting);
  ConfigWriter config;
  if (!config) return false;
  writeParked(config, conflicting, successor.channel);
  return config.save();
}

}  // namespace

HandOverMode handOverModeOf(int code) {
  switch (code) {
    case 0:
      return HandOverMode::hand_over;
    case 1:
      return HandOverMode::on_plug;
    case 4:
      return HandOverMode::and_park;
    default:
      return HandOverMode::release_only;
  }
}

bool handOverConflict(HostAnswers &host, int channel, int parked_behind, HandOverMode mode, int &successor_profile) {
  successor_profile = kNone;
  ChannelSnapshots channels;
  if (!readForComparing(channels)) return false;
  if (channels[channel].conflictch != kNone) return true;  // it waits itself, so none waits for it
  ChannelMarks waiting;
  for (int i = 0; i < kChannels; ++i) waiting[i] = channels[i].conflictch == channel;

  Successor successor;
  if (mode != HandOverMode::release_only) {
    char now[kTimeTextSize];
    formatLocalTime(now);
    successor = chooseSuccessor(channels, waiting, now);
  }
  // Intended: A stored profile of 99 counts as none.
  if (successor.profile != kReportedForNone) successor_profile = successor.profile;
  const bool only_one = mode != HandOverMode::on_plug && successor.channel != kNone && host.isOneChannelLimited();
  if (only_one) waiting[successor.channel] = false;
  if (only_one && mode == HandOverMode::and_park) waiting[channel] = true;
  const bool written = only_one ? writeHandOverOfOnlyChannel(parked_behind, successor, waiting)
                                : writeHandOver(channel, parked_behind, successor, waiting);
  if (!written) return false;
  return successor.channel == kNone || parkBehind(host, successor);
}

int followUpConflict(HostAnswers &host, int channel, bool came, int stored_conflict, int parked_behind) {
  int successor = kNone;
  if (!came) {
    if (stored_conflict == kNone) handOverConflict(host, channel, kNone, HandOverMode::hand_over, successor);
  } else if (parked_behind != kNone && host.isOneChannelLimited()) {
    handOverConflict(host, channel, parked_behind, HandOverMode::on_plug, successor);
  }
  return successor;
}

}  // namespace usbdev
