// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a channel can stream, by its nodes.
#include "devices/stream_type.h"

#include <gtest/gtest.h>

#include "plain_config.h"

namespace usbdev {
namespace {

TEST(AStreamType, IsWhatTheNodesCarry) {
  EXPECT_EQ(streamTypeOf(-1, -1), StreamType::none);
  EXPECT_EQ(streamTypeOf(-1, 0), StreamType::audio);
  EXPECT_EQ(streamTypeOf(0, -1), StreamType::video);
  EXPECT_EQ(streamTypeOf(0, 0), StreamType::video_and_audio);
}

TEST(AStreamType, HasTheNumberThatCallersKnow) {
  EXPECT_EQ(static_cast<int>(StreamType::unavailable), -1);
  EXPECT_EQ(static_cast<int>(StreamType::none), 0);
  EXPECT_EQ(static_cast<int>(StreamType::audio), 1);
  EXPECT_EQ(static_cast<int>(StreamType::video), 2);
  EXPECT_EQ(static_cast<int>(StreamType::video_and_audio), 3);
}

TEST(AStreamType, OfAChannelWithoutStoredNodesIsNone) {
  PlainConfig config;
  EXPECT_EQ(readStreamType(opened(config).channel(0)), StreamType::none);
  config["ch0/audio/anode"] = "2";
  EXPECT_EQ(readStreamType(opened(config).channel(0)), StreamType::audio);
  config["ch0/video/vnode"] = "5";
  EXPECT_EQ(readStreamType(opened(config).channel(0)), StreamType::video_and_audio);
}

TEST(Video, IsInAVideoStreamWithOrWithoutAudio) {
  EXPECT_TRUE(hasVideo(StreamType::video));
  EXPECT_TRUE(hasVideo(StreamType::video_and_audio));
  EXPECT_FALSE(hasVideo(StreamType::audio));
  EXPECT_FALSE(hasVideo(StreamType::none));
  EXPECT_FALSE(hasVideo(StreamType::unavailable));
}

TEST(Audio, IsInAnAudioStreamWithOrWithoutVideo) {
  EXPECT_TRUE(hasAudio(StreamType::audio));
  EXPECT_TRUE(hasAudio(StreamType::video_and_audio));
  EXPECT_FALSE(hasAudio(StreamType::video));
  EXPECT_FALSE(hasAudio(StreamType::none));
  EXPECT_FALSE(hasAudio(StreamType::unavailable));
}

}  // namespace
}  // namespace usbdev
