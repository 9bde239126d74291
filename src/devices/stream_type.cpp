// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/stream_type.h"

namespace usbdev {

StreamType streamTypeOf(int vnode, int anode) {
  if (vnode == kNone) return anode == kNone ? StreamType::none : StreamType::audio;
  return anode == kNone ? StreamType::video : StreamType::video_and_audio;
}

StreamType readStreamType(const Section &channel) {
  const int vnode = channel.get(keys::vnode);
  return streamTypeOf(vnode, channel.get(keys::anode));
}

bool hasVideo(StreamType type) { return type == StreamType::video || type == StreamType::video_and_audio; }

bool hasAudio(StreamType type) { return type == StreamType::audio || type == StreamType::video_and_audio; }

}  // namespace usbdev
