// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/stream_fit.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usbdevctl::allSettings;
using usbdevctl::fitStream;
using usbdevctl::StreamFit;

// A camera with MJPEG in two sizes, each with its rates.
class AStreamOnAnotherCamera : public testing::Test {
 protected:
  AStreamOnAnotherCamera() {
    camera_.count = 1;
    camera_.formats[0].codec = 1;
    add(1280, 720, {30, 15});
    add(640, 480, {60, 29.97F, 5});
    wanted_.stream_type = 2;
    wanted_.vcodec = 1;
    wanted_.width = 640;
    wanted_.height = 480;
    wanted_.framerate = 60;
  }

  void add(int width, int height, const std::vector<float> &rates) {
    _usbfmt_des &format = camera_.formats[0];
    _usbres_des &size = format.res[format.res_count++];
    size.width = width;
    size.height = height;
    for (const float rate : rates) size.fps[size.fps_count++] = rate;
  }

  StreamFit fit() const { return fitStream(allSettings(wanted_), camera_); }

  std::vector<std::string> differences() const {
    std::vector<std::string> texts;
    for (const usbdevctl::StreamDifference &it : fit().differences) texts.push_back(differenceText(it));
    return texts;
  }

  usbdevctl::CameraFormats camera_;
  _streaminfo wanted_ = {};
};

TEST_F(AStreamOnAnotherCamera, StaysAsItWasWhereTheCameraOffersIt) {
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(fit().stream.size, "640x480");
  EXPECT_EQ(fit().stream.rate, 60.0F);
}

TEST_F(AStreamOnAnotherCamera, GetsTheSizeWithTheNearestNumberOfPixels) {
  wanted_.width = 1920;
  wanted_.height = 1080;
  wanted_.framerate = 30;
  EXPECT_THAT(differences(), ElementsAre("size 1280x720 instead of 1920x1080"));
}

TEST_F(AStreamOnAnotherCamera, GetsTheNearestRate) {
  wanted_.framerate = 25;
  EXPECT_THAT(differences(), ElementsAre("fps 29.97 instead of 25"));
}

TEST_F(AStreamOnAnotherCamera, GetsTheListedRateForTheStoredOne) {
  camera_.formats[0].res[1].fps[1] = 14.985F;
  wanted_.framerate = 14.98F;
  EXPECT_THAT(differences(), IsEmpty());
  EXPECT_EQ(fit().stream.rate, 14.985F);
}

// The library takes the first listed rate that is not above the request.
TEST_F(AStreamOnAnotherCamera, GetsNoRateThatIsListedAfterASmallerOne) {
  add(320, 240, {15, 30, 10});
  wanted_.width = 320;
  wanted_.height = 240;
  wanted_.framerate = 30;
  EXPECT_THAT(differences(), ElementsAre("fps 15 instead of 30"));
}

TEST_F(AStreamOnAnotherCamera, KeepsTheStoredRateOfASizeWithoutRates) {
  add(320, 240, {});
  wanted_.width = 320;
  wanted_.height = 240;
  EXPECT_EQ(fit().stream.rate, std::nullopt);
}

TEST_F(AStreamOnAnotherCamera, LosesWhatOnlyEncodedStreamsHave) {
  wanted_.vcodec = 0;
  EXPECT_THAT(differences(),
              ElementsAre("codec mjpeg instead of h264", "no overlay", "no flip", "no mirror", "no display"));
}

}  // namespace
