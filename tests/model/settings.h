// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of a stream that every record shows, as a channel stores them.
#pragma once

#include "text.h"
#include "world.h"

namespace model {

template <typename Record>
void readSettings(const Channel &channel, Record *record) {
  record->stream_type = channel.streamType();
  record->vnode = channel.vnode();
  record->vcodec = channel.number("video/vcodec", 1);
  record->width = channel.number("video/width", 1280);
  record->height = channel.number("video/height", 720);
  record->framerate = channel.rate();
  copy(record->fetype, channel.text("video/fetype"));
  record->osdenable = channel.number("video/osdenable", 1);
  record->flip = channel.number("video/flip", 0);
  record->mirror = channel.number("video/mirror", 0);
  record->ldspoutput = channel.number("video/ldspoutput", 0);
  record->acodec = channel.number("audio/acodec", 0);
  record->volume = channel.number("audio/volume", 50);
}

}  // namespace model
