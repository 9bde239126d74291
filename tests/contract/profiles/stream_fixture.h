// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Profile 2 on channel 4, whose camera on node 5 lists MJPEG and raw formats, and a change of its stream.
#pragma once

#include <string>

#include "contract_test.h"
#include "encoding_host.h"
#include "record_text.h"

namespace contract {

class StreamTest : public ContractTest {
 protected:
  static constexpr int kProfile = 2;
  static constexpr int kMjpeg = 1;
  static constexpr int kH264 = 0;
  static constexpr int kReportAll = 5;

  StreamTest() {
    allowEncoding(host);
    host.camera(5, "3-1.2")
        .listing(Listing()
                     .format("MJPG")
                     .size(1280, 720)
                     .rate("30.000")
                     .rate("25.000")
                     .rate("20.000")
                     .rate("15.000")
                     .size(640, 480)
                     .rate("120.000")
                     .rate("60.000")
                     .rate("5.000")
                     .format("YUYV")
                     .size(640, 480)
                     .rate("30.000")
                     .rate("7.500")
                     .text());
    channel().attached("3-1.2", 5).streaming(kProfile);
  }

  HostChannel channel() { return host.channel(4); }

  // The profile's stream with one of the camera's codecs, as a caller has read it.
  _streaminfo stream(int codec) const {
    _streaminfo info = zeroed<_streaminfo>();
    for (size_t i = 0; i < sizeof info.header; ++i) info.header[i] = static_cast<unsigned char>('a' + i);
    info.channel = 4;
    info.stream_type = 3;
    info.vnode = 5;
    info.vcodec = codec;
    info.width = 640;
    info.height = 480;
    info.framerate = codec == kMjpeg ? 60.0F : 30.0F;
    info.aenable = 1;
    info.samplerate = 8000;
    info.channelno = 1;
    info.bitrate = 64000;
    info.volume = 50;
    return info;
  }

  Lines logged() const { return host.journal.only({"log"}); }
};

}  // namespace contract
