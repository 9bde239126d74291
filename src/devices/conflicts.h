// Which channels cannot stream at the same time, and who takes over when one goes.
#pragma once

#include "core/channel_snapshot.h"
#include "devices/host_answers.h"

namespace usbdev {

/// updateConflict's answer when no channel took over.
constexpr int kNoSuccessor = 99;

/// What updateConflict does beside releasing the waiting channels. Callers may pass other codes, which only release.
constexpr int kHandOver = 0;         // a channel went away: a waiting one takes over
constexpr int kHandOverOnPlug = 1;   // a successor is chosen; no special case on a one-channel host
constexpr int kHandOverAndPark = 4;  // as kHandOver; a one-channel host parks the released channel too

/// A device whose conflicts are tested: its port and the bridges that stand for its node. The nodes are asked in
/// order, the first one that is behind a bridge counts.
class ConflictTest {
 public:
  ConflictTest(HostAnswers &host, const char *slot, int vnode);

  void addNode(int vnode) { nodes_[node_count_++] = vnode; }

  /// Do a channel's device and this one share a root port, a bridge, or a host that serves one channel only?
  bool conflictsWith(const char *other_slot, int other_vnode);

 private:
  const char *ownBridge();

  HostAnswers &host_;
  const char *slot_;
  int node_count_ = 0;
  int nodes_[kChannels + 1];
};

/// One mark for each channel.
using ChannelMarks = bool[kChannels];

/// Marks the channels, but for one, whose cameras conflict with the tested device.
void markConflicts(ConflictTest &test, const ChannelSnapshots &channels, int own, ChannelMarks &conflicting);

/// Parks the marked channels behind another one.
void writeParked(const OpenConfig &config, const ChannelMarks &parked, int behind);

/// syncConflict with answers that the calling operation may already have.
int recomputeConflicts(HostAnswers &host, int *states);

/// What follows once a channel has come or gone: one that went and was nobody's guest hands over; one that came and has
/// to wait settles it on a one-channel host. The profile of the channel that took over, or kNoSuccessor.
int followUpConflict(HostAnswers &host, int channel, bool came, int stored_conflict, int parked_behind);

/// updateConflict with answers that the calling operation may already have.
int handOverConflict(HostAnswers &host, int channel, int value, int mode, int *profile);

}  // namespace usbdev
