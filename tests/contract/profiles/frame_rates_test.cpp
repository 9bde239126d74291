// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which of a camera's frame rates answers a request.
#include <cmath>
#include <string>

#include "stream_fixture.h"

namespace contract {
namespace {

using testing::IsEmpty;

class AFrameRate : public StreamTest {
 protected:
  static constexpr float kUntouched = -7;

  int choose(int codec, int width, int height, float rate) {
    request = stream(codec);
    request.width = width;
    request.height = height;
    request.framerate = rate;
    chosen = kUntouched;
    return findclosedFPS(kProfile, &request, &chosen);
  }

  float chosenFor(float rate) {
    EXPECT_EQ(choose(kMjpeg, 1280, 720, rate), 0);
    return chosen;
  }

  void listRates(std::initializer_list<const char *> rates) {
    Listing listing;
    listing.format("MJPG").size(1280, 720);
    for (const char *rate : rates) listing.rate(rate);
    host.camera(5, "3-1.2").listing(listing.text());
  }

  _streaminfo request{};
  float chosen = kUntouched;
};

TEST_F(AFrameRate, ThatIsListedIsChosen) {
  for (const float rate : {30.0F, 25.0F, 20.0F, 15.0F}) EXPECT_EQ(chosenFor(rate), rate);
}

TEST_F(AFrameRate, BetweenTwoListedOnesIsTheLower) {
  EXPECT_EQ(chosenFor(28), 25.0F);
  EXPECT_EQ(chosenFor(29.99F), 25.0F);
  EXPECT_EQ(chosenFor(15.5F), 15.0F);
}

TEST_F(AFrameRate, AboveAllListedOnesIsTheHighest) {
  EXPECT_EQ(chosenFor(31), 30.0F);
  EXPECT_EQ(chosenFor(INFINITY), 30.0F);
}

TEST_F(AFrameRate, BelowAllListedOnesIsTheLast) {
  EXPECT_EQ(chosenFor(14.99F), 15.0F);
  EXPECT_EQ(choose(kMjpeg, 640, 480, 3), 0);
  EXPECT_EQ(chosen, 5.0F);
}

TEST_F(AFrameRate, IsTheFirstNotAboveInTheOrderOfTheList) {
  listRates({"15.000", "30.000", "20.000"});
  EXPECT_EQ(chosenFor(30), 15.0F);
  EXPECT_EQ(chosenFor(15), 15.0F);
}

TEST_F(AFrameRate, BelowAllOfAnUnorderedListIsTheLast) {
  listRates({"15.000", "30.000", "20.000"});
  EXPECT_EQ(chosenFor(5), 20.0F);
}

TEST_F(AFrameRate, IsComparedInSinglePrecision) {
  listRates({"29.970", "15.000"});
  EXPECT_EQ(chosenFor(29.97F), 29.97F);
}

TEST_F(AFrameRate, OfAtMostZeroChoosesNothing) {
  for (const float rate : {0.0F, -1.0F, NAN}) {
    EXPECT_EQ(choose(kMjpeg, 1280, 720, rate), 0);
    EXPECT_EQ(chosen, kUntouched);
  }
}

TEST_F(AFrameRate, OfASizeWithoutRatesChoosesNothing) {
  listRates({});
  EXPECT_EQ(choose(kMjpeg, 1280, 720, 30), 0);
  EXPECT_EQ(chosen, kUntouched);
}

TEST_F(AFrameRate, IsOfTheRequestedCodec) {
  EXPECT_EQ(choose(kH264, 640, 480, 20), 0);
  EXPECT_EQ(chosen, 7.5F);
}

TEST_F(AFrameRate, OfACodecThatIsNotListedFailsAtAnyRate) {
  EXPECT_EQ(choose(2, 1280, 720, 30), -1);
  EXPECT_EQ(choose(2, 1280, 720, 0), -1);
  EXPECT_EQ(chosen, kUntouched);
}

TEST_F(AFrameRate, OfASizeThatIsNotListedForTheCodecFailsAtAnyRate) {
  EXPECT_EQ(choose(kH264, 1280, 720, 30), -1);
  EXPECT_EQ(choose(kMjpeg, 1280, 721, 30), -1);
  EXPECT_EQ(choose(kMjpeg, 640, 720, 0), -1);
  EXPECT_EQ(choose(kMjpeg, 0, 0, 30), -1);
  EXPECT_EQ(chosen, kUntouched);
}

TEST_F(AFrameRate, OfASizeListedTwiceIsOfTheFirstOne) {
  host.camera(5, "3-1.2")
      .listing(Listing().format("MJPG").size(1280, 720).rate("30.000").size(1280, 720).rate("10.000").text());
  EXPECT_EQ(chosenFor(10), 30.0F);
}

TEST_F(AFrameRate, OfACodecListedTwiceIsOfTheFirstOne) {
  host.camera(5, "3-1.2")
      .listing(
          Listing().format("MJPG").size(640, 480).rate("30.000").format("MJPG").size(1280, 720).rate("30.000").text());
  EXPECT_EQ(choose(kMjpeg, 640, 480, 30), 0);
  EXPECT_EQ(choose(kMjpeg, 1280, 720, 30), -1);
}

TEST_F(AFrameRate, OfACameraThatListsNothingFails) {
  host.camera(5, "3-1.2").listing("");
  EXPECT_EQ(choose(kMjpeg, 1280, 720, 30), -1);
}

TEST_F(AFrameRate, OfAProfileThatCannotStreamFails) {
  channel().slotSwitch(0);
  EXPECT_EQ(choose(kMjpeg, 1280, 720, 30), -1);
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AFrameRate, IsRefusedWithoutARequestOrAPlaceForTheAnswer) {
  EXPECT_EQ(findclosedFPS(kProfile, nullptr, &chosen), -1);
  EXPECT_EQ(findclosedFPS(kProfile, &request, nullptr), -1);
  EXPECT_EQ(findclosedFPS(4, &request, &chosen), -1);
  EXPECT_EQ(findclosedFPS(-1, &request, &chosen), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
