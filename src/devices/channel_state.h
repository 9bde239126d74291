// The ten channels as one pass reads them, for the operations that compare them with each other.
#pragma once

#include "core/config.h"
#include "devices/conflicts.h"

namespace usbdev {

/// What the configuration file holds about a channel.
struct ChannelState {
  int exists;
  int profile;
  char usbslot[128];
  char devname[256];
  char profilename[256];
  char createtime[128];
  int slot_switch;
  bool switched_on;  // a switch that was never stored counts as on here
  int vcodec;
  int vnode;
  int conflictch;
  int anode;
  char acap[16];

  bool hasCamera() const { return exists != 0 && vnode != kNone; }
  bool hasUnparkedCamera() const { return hasCamera() && conflictch == kNone; }
};

using ChannelStates = ChannelState[kChannels];

void readChannels(const ConfigSession &config, ChannelStates &channels);

/// The same in a pass of its own; false when the file cannot be opened.
bool readChannels(ChannelStates &channels, OpenFailure failure = OpenFailure::usual);

/// One mark for each channel.
using ChannelMarks = bool[kChannels];

/// Marks the channels, but for one, whose cameras conflict with the tested device.
void markConflicts(ConflictTest &test, const ChannelStates &channels, int own, ChannelMarks &conflicting);

/// Parks the marked channels behind another one.
void writeParked(const ConfigSession &config, const ChannelMarks &parked, int behind);

/// Takes the profile from a channel, with what was made for it.
void writeUnbound(const Section &channel);

}  // namespace usbdev
