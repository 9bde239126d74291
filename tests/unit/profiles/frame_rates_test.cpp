// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which of the listed rates answers a request.
#include "profiles/frame_rates.h"

#include <gtest/gtest.h>

#include <vector>

namespace usbdev {
namespace {

constexpr float kUntouched = -7;

/// An MJPEG format of 640x480 and 1280x720, and a raw one of 640x480.
class ARequest : public testing::Test {
 protected:
  ARequest() {
    formats[0].codec = 1;
    addSize(formats[0], 640, 480, {60, 30, 15});
    addSize(formats[0], 1280, 720, {30, 7.5F, 10});
    formats[1].codec = 0;
    addSize(formats[1], 640, 480, {25});
    request.vcodec = 1;
    request.width = 640;
    request.height = 480;
  }

  static void addSize(_usbfmt_des &format, int width, int height, const std::vector<float> &rates) {
    _usbres_des &size = format.res[format.res_count++];
    size.width = width;
    size.height = height;
    for (const float rate : rates) size.fps[size.fps_count++] = rate;
  }

  float chosenFor(float rate) {
    request.framerate = rate;
    float chosen = kUntouched;
    EXPECT_TRUE(chooseRate(formats, 2, request, chosen));
    return chosen;
  }
  bool isOffered() const {
    float chosen = kUntouched;
    const bool offered = chooseRate(formats, 2, request, chosen);
    EXPECT_EQ(chosen, kUntouched);
    return offered;
  }

  _usbfmt_des formats[USBDEV_FORMATS] = {};
  _streaminfo request{};
};

TEST_F(ARequest, GetsTheRateItNames) {
  EXPECT_EQ(chosenFor(60), 60);
  EXPECT_EQ(chosenFor(30), 30);
  EXPECT_EQ(chosenFor(15), 15);
}

TEST_F(ARequest, GetsTheFirstListedRateBelow) {
  EXPECT_EQ(chosenFor(59.99F), 30);
  EXPECT_EQ(chosenFor(29), 15);
  EXPECT_EQ(chosenFor(1000), 60);
}

TEST_F(ARequest, BelowEveryRateGetsTheLastListedOne) {
  EXPECT_EQ(chosenFor(14.99F), 15);
  request.width = 1280;
  request.height = 720;
  EXPECT_EQ(chosenFor(1), 10);
}

TEST_F(ARequest, GetsTheFirstListedRateBelowThoughALaterOneIsCloser) {
  request.width = 1280;
  request.height = 720;
  EXPECT_EQ(chosenFor(29), 7.5F);
}

TEST_F(ARequest, GetsTheRatesOfItsOwnCodec) {
  request.vcodec = 0;
  EXPECT_EQ(chosenFor(30), 25);
}

TEST_F(ARequest, ForNoRateGetsNone) {
  request.framerate = 0;
  EXPECT_TRUE(isOffered());
  request.framerate = -1;
  EXPECT_TRUE(isOffered());
}

TEST_F(ARequest, ForASizeWithoutRatesGetsNone) {
  addSize(formats[0], 320, 240, {});
  request.width = 320;
  request.height = 240;
  request.framerate = 30;
  EXPECT_TRUE(isOffered());
}

TEST_F(ARequest, ForASizeThatIsNotListedFails) {
  request.height = 481;
  EXPECT_FALSE(isOffered());
  request.width = 1280;
  EXPECT_FALSE(isOffered());
}

TEST_F(ARequest, ForASizeOfAnotherCodecFails) {
  request.vcodec = 0;
  request.width = 1280;
  request.height = 720;
  EXPECT_FALSE(isOffered());
}

TEST_F(ARequest, ForACodecThatIsNotListedFails) {
  request.vcodec = 2;
  EXPECT_FALSE(isOffered());
}

TEST_F(ARequest, OfACameraWithoutFormatsFails) {
  float chosen = kUntouched;
  request.framerate = 30;
  EXPECT_FALSE(chooseRate(formats, 0, request, chosen));
  EXPECT_FALSE(chooseRate(formats, -1, request, chosen));
  EXPECT_EQ(chosen, kUntouched);
}

}  // namespace
}  // namespace usbdev
