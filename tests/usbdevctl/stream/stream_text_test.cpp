// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using usbdevctl::rateJson;
using usbdevctl::rateText;
using usbdevctl::sizeText;
using usbdevctl::streamField;
using usbdevctl::videoCodecs;
using usbdevctl::wordFor;

TEST(ARate, IsPrintedAsShortAsPossible) {
  EXPECT_EQ(rateText(30), "30");
  EXPECT_EQ(rateText(100), "100");
  EXPECT_EQ(rateText(0), "0");
  EXPECT_EQ(rateText(29.97F), "29.97");
  EXPECT_EQ(rateText(240.004F), "240.004");
}

TEST(ARate, IsTheSameNumberForPrograms) {
  EXPECT_EQ(rateJson(29.97F).line(), "29.97\n");
  EXPECT_EQ(rateJson(30).line(), "30\n");
}

TEST(ARate, ThatIsNotANumberIsNull) {
  EXPECT_EQ(rateJson(std::numeric_limits<float>::quiet_NaN()).line(), "null\n");
  EXPECT_EQ(rateJson(std::numeric_limits<float>::infinity()).line(), "null\n");
}

TEST(ASize, IsWidthByHeight) { EXPECT_EQ(sizeText(1280, 720), "1280x720"); }

TEST(ACodec, HasTheNameOfItsNumber) {
  EXPECT_EQ(wordFor(videoCodecs(), 1), "mjpeg");
  EXPECT_EQ(wordFor(videoCodecs(), 0), "h264");
}

TEST(ANumberWithoutAWord, IsPrintedAsANumber) {
  EXPECT_EQ(wordFor(videoCodecs(), 2), "2");
  EXPECT_EQ(wordFor(videoCodecs(), -1), "-1");
}

TEST(AStream, IsNoneAudioVideoOrBoth) {
  EXPECT_EQ(streamField(0).cell.text, "none");
  EXPECT_EQ(streamField(1).cell.text, "audio");
  EXPECT_EQ(streamField(2).cell.text, "video");
  EXPECT_EQ(streamField(3).cell.text, "both");
}

}  // namespace
