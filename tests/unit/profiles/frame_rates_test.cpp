// Which of the listed frame rates a request gets.
#include "profiles/frame_rates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace usbdev {
namespace {

constexpr float kBefore = -7;

/// A camera with one format, of codec 1, and one size, 1280 by 720.
class AListOfRates : public testing::Test {
 protected:
  AListOfRates() {
    formats[0].codec = 1;
    formats[0].res_count = 1;
    size.width = 1280;
    size.height = 720;
    request.vcodec = 1;
    request.width = 1280;
    request.height = 720;
  }

  void list(const std::vector<float> &rates) {
    size.fps_count = static_cast<int>(rates.size());
    std::copy(rates.begin(), rates.end(), size.fps);
  }

  float chosenFor(float rate) {
    request.framerate = rate;
    float chosen = kBefore;
    EXPECT_TRUE(chooseRate(formats, 1, request, chosen));
    return chosen;
  }

  void expectRefusal() {
    float chosen = kBefore;
    EXPECT_FALSE(chooseRate(formats, 1, request, chosen));
    EXPECT_EQ(chosen, kBefore);
  }

  _usbfmt_des formats[USBDEV_FORMATS] = {};
  _usbres_des &size = formats[0].res[0];
  _streaminfo request = {};
};

TEST_F(AListOfRates, GivesTheFirstOneThatIsNotAboveTheRequest) {
  list({60, 15, 30});
  EXPECT_EQ(chosenFor(30), 15);
  EXPECT_EQ(chosenFor(60), 60);
  EXPECT_EQ(chosenFor(61), 60);
}

TEST_F(AListOfRates, GivesTheLastOneWhenAllAreAboveTheRequest) {
  list({30, 15, 20});
  EXPECT_EQ(chosenFor(14.99F), 20);
}

TEST_F(AListOfRates, GivesNothingForARequestThatIsNotAboveZero) {
  list({30});
  EXPECT_EQ(chosenFor(0), kBefore);
  EXPECT_EQ(chosenFor(-30), kBefore);
  EXPECT_EQ(chosenFor(std::nanf("")), kBefore);
}

TEST_F(AListOfRates, GivesNothingWhenItIsEmpty) { EXPECT_EQ(chosenFor(30), kBefore); }

TEST_F(AListOfRates, MayReplaceTheRateOfTheRequestItself) {
  list({60, 50, 25});
  request.framerate = 30;
  EXPECT_TRUE(chooseRate(formats, 1, request, request.framerate));
  EXPECT_EQ(request.framerate, 25);
}

TEST_F(AListOfRates, BelongsToItsCodec) {
  request.vcodec = 0;
  expectRefusal();
}

TEST_F(AListOfRates, BelongsToItsWidthAndHeight) {
  request.width = 1279;
  expectRefusal();
  request.width = 1280;
  request.height = 721;
  expectRefusal();
}

TEST_F(AListOfRates, OfAFormatBeyondTheCountIsNotUsed) {
  float chosen = kBefore;
  EXPECT_FALSE(chooseRate(formats, 0, request, chosen));
  EXPECT_FALSE(chooseRate(formats, -1, request, chosen));
  EXPECT_EQ(chosen, kBefore);
}

}  // namespace
}  // namespace usbdev
