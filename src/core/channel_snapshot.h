// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A channel as one pass over the configuration file reads it. Each operation reads only some of the keys, in
// its own order; the rest of the snapshot stays as in a channel that was never used.
#pragma once

#include "core/config.h"

namespace usbdev {

struct ChannelSnapshot {
  int exists = 0;
  int profile = kNone;
  char usbslot[128] = "";
  char devname[256] = "";
  char profilename[256] = "";
  char createtime[128] = "";
  int slot_switch = -1;
  bool switched_on = true;  // a switch that was never stored counts as on here
  Codec vcodec = Codec::mjpeg;
  int vnode = kNone;
  int conflictch = kNone;
  int anode = kNone;
  char acap[16] = "";
  char hlspath[64] = "";
  char share_link[64] = "";  // the name of the enabled share link

  ChannelSnapshot();

  bool hasCamera() const { return exists != 0 && vnode != kNone; }
  bool hasUnparkedCamera() const { return hasCamera() && conflictch == kNone; }
};

using ChannelSnapshots = ChannelSnapshot[kChannels];

/// The value of `exists` in a channel that was never configured, for the readers to which it is not a removed device.
constexpr int kNeverConfigured = -1;

/// For the operations that compare the channels with each other: everything but the links.
void readForComparing(const OpenConfig &config, ChannelSnapshots &channels);

/// The same in a pass of its own; false when the file cannot be opened.
bool readForComparing(ChannelSnapshots &channels, OpenFailure failure = OpenFailure::usual);

/// For the scans, which compare the channels with the attached devices: presence, conflict, port and name.
void readForScan(const OpenConfig &config, ChannelSnapshots &channels);

/// For the start-up: presence, switch, profile and links, of configured channels only.
void readForStartUp(const OpenConfig &config, ChannelSnapshots &channels);

}  // namespace usbdev
