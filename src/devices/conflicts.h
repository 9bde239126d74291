// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channels cannot stream at the same time.
#pragma once

#include "core/channel_snapshot.h"
#include "devices/host_answers.h"

namespace usbdev {

/// A device whose conflicts are tested: its port and the bridges above its node. The nodes are asked in
/// order, the first one that has a bridge above it counts.
class ConflictTest {
 public:
  ConflictTest(HostAnswers &host, const char *slot, int vnode);

  void addNode(int vnode) { nodes_[node_count_++] = vnode; }

  /// Do a channel's device and this one share a root port or a bridge, or is the host limited to one channel?
  bool conflictsWith(const char *other_slot, int other_vnode);

 private:
  const char *ownBridge();

  HostAnswers &host_;
  const char *slot_;
  int node_count_ = 0;
  int nodes_[kChannels + 1];
};

/// The same test for a caller that knows its own bridge, null where there is none. Cuts the other port's name to its
/// root port.
bool conflictsOnBridge(HostAnswers &host, char *other_slot, const char *slot, int other_vnode, const char *own_bridge);

/// One mark for each channel.
using ChannelMarks = bool[kChannels];

/// Marks the channels, but for one, whose cameras conflict with the tested device.
void markConflicts(ConflictTest &test, const ChannelSnapshots &channels, int own, ChannelMarks &conflicting);

/// Makes the marked channels wait for another one.
void writeParked(const OpenConfig &config, const ChannelMarks &parked, int behind);

/// Finds the first channel that may stream and conflicts with a channel; kNone for none. False when the file cannot be
/// opened.
bool findConflict(HostAnswers &host, int channel, int &found);

/// What is to be done about a channel's conflict mark. Any other value is written as the mark, so that no channel can
/// be made to wait for channel 0 or 1 in this way.
enum class ConflictTask : int { leave = -1, clear_and_recompute = 0, recompute = 1 };

using ConflictTasks = ConflictTask[kChannels];

/// From a caller's codes, kChannels of them, to the tasks, and back.
void takeTaskCodes(const int *codes, ConflictTasks &tasks);
void giveTaskCodes(const ConflictTasks &tasks, int *codes);

/// Does the tasks; afterwards `recompute` marks a channel that was recomputed, `leave` any other one. False when
/// something could not be stored.
bool recomputeConflicts(HostAnswers &host, ConflictTasks &tasks);

}  // namespace usbdev
