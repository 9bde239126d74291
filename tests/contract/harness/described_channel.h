// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A channel of which every key has a value of its own, none of them a default.
#pragma once

#include "host.h"

namespace contract {

inline HostChannel describe(HostChannel channel) {
  channel.exists(1).profile(2).slot("3-1.2").name("HD Webcam").slotSwitch(1).conflict(-1);
  channel.createTime("2024-03-05 08:15:00").profileName("Front door").set("vtag", "12345678").set("hlspath", "abcdef");
  channel.vnode(5).vcodec(0).set("video/venable", 1).set("video/spsstate", 1).set("video/width", 1920);
  channel.set("video/height", 1080).set("video/framerate", "15.00").set("video/fetype", "7").set("video/cap", "0 1");
  channel.set("video/osdenable", 0).set("video/flip", 1).set("video/mirror", 2).set("video/ldspoutput", 3);
  channel.anode(3).set("audio/aenable", 6).set("audio/acodec", 1).set("audio/samplerate", 48000);
  channel.set("audio/channelno", 2).set("audio/bitrate", 96000).set("audio/volume", 80).set("audio/acap", "1");
  return channel.set("sharelink/shrenable", 4);
}

// The same channel with one of its two devices.
inline HostChannel describeVideoOnly(HostChannel channel) { return describe(channel).anode(-1); }
inline HostChannel describeAudioOnly(HostChannel channel) { return describe(channel).vnode(-1); }

}  // namespace contract
