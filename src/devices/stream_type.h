// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a channel can stream, by the nodes of its device.
#pragma once

#include "core/config.h"

namespace usbdev {

enum class StreamType : int { unavailable = -1, none = 0, audio = 1, video = 2, video_and_audio = 3 };

StreamType streamTypeOf(int vnode, int anode);
StreamType readStreamType(const Section &channel);

bool hasVideo(StreamType type);
bool hasAudio(StreamType type);

}  // namespace usbdev
