// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What each line of a camera's formats listing adds to the capability table.
#include "devices/format_listing.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace usbdev {
namespace {

class AListing : public testing::Test {
 protected:
  bool take(std::string line) { return listing.take(line.data()); }
  bool takeAll(const std::vector<std::string> &lines) {
    bool goes_on = true;
    for (const std::string &line : lines) goes_on = take(line);
    return goes_on;
  }
  bool takeRate(const std::string &rate) { return take("\t\t\tInterval: Discrete 0.033s (" + rate + " fps)\n"); }

  const _usbfmt_des &format(int i) { return listing.table()[i]; }
  const _usbres_des &size(int i) { return format(0).res[i]; }

  FormatListing listing{3, true};
};

const std::string kMjpeg = "\tPixel Format: 'MJPG' (compressed)\n";
const std::string kRaw = "\tPixel Format: 'YUYV'\n";
const std::string kVga = "\t\tSize: Discrete 640x480\n";

TEST_F(AListing, HasNoFormatAtFirst) {
  EXPECT_EQ(listing.formatCount(), 0);
  EXPECT_FALSE(listing.hasRateOver60());
}

TEST_F(AListing, GetsAFormatByItsCodeWithTheIndexBefore) {
  takeAll({"\tIndex       : 7\n", kMjpeg, "\tIndex       : 9\n", kRaw});
  ASSERT_EQ(listing.formatCount(), 2);
  EXPECT_EQ(format(0).index, 7);
  EXPECT_EQ(format(0).codec, 1);
  EXPECT_EQ(format(1).index, 9);
  EXPECT_EQ(format(1).codec, 0);
}

TEST_F(AListing, GetsAFormatWithoutAnIndexBeforeAsTheFirst) {
  take(kMjpeg);
  ASSERT_EQ(listing.formatCount(), 1);
  EXPECT_EQ(format(0).index, 0);
}

TEST_F(AListing, NeedsNoBlankAfterAColon) {
  take("Pixel Format:'MJPG'\n");
  EXPECT_EQ(listing.formatCount(), 1);
}

TEST_F(AListing, GetsNoFormatByAnotherCode) {
  takeAll(
      {"\tPixel Format: 'H264' (compressed)\n", "\tPixel Format: 'MJP'\n", "\tPixel Format:\n", "\tPixel Format: '\n"});
  EXPECT_EQ(listing.formatCount(), 0);
}

TEST_F(AListing, GetsNoRawFormatWhereTheHostMayNotEncode) {
  FormatListing without_raw(3, false);
  std::string raw = kRaw;
  EXPECT_TRUE(without_raw.take(raw.data()));
  EXPECT_EQ(without_raw.formatCount(), 0);
}

TEST_F(AListing, GetsEightFormatsAtMost) {
  for (int i = 0; i < 9; ++i) takeAll({"Index: " + std::to_string(i), kMjpeg});
  EXPECT_EQ(listing.formatCount(), 8);
  EXPECT_EQ(format(7).index, 7);
  take(kVga);
  EXPECT_EQ(format(7).res_count, 0);
}

TEST_F(AListing, GetsASizeInItsFormat) {
  takeAll({kMjpeg, kVga, "\t\tSize: Discrete 1280x720\n"});
  ASSERT_EQ(format(0).res_count, 2);
  EXPECT_EQ(size(0).width, 640);
  EXPECT_EQ(size(0).height, 480);
  EXPECT_EQ(size(1).width, 1280);
  EXPECT_EQ(size(1).height, 720);
}

TEST_F(AListing, GetsNoSizeBeforeAFormat) {
  takeAll({kVga, kMjpeg});
  EXPECT_EQ(format(0).res_count, 0);
}

TEST_F(AListing, GetsNoSizeFromALineWithoutWidthAndHeight) {
  takeAll({kMjpeg, "Size: Discrete 640\n", "Size: Discrete\n", "Size: 1x1\n", "Size:\n"});
  EXPECT_EQ(format(0).res_count, 0);
}

TEST_F(AListing, Gets32SizesAtMost) {
  take(kMjpeg);
  testing::internal::CaptureStderr();
  for (int i = 1; i <= 33; ++i) take("Size: Discrete " + std::to_string(i) + "x1\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "device[3]:0001 support(33x1) over max(32) res. list define\n");
  EXPECT_EQ(format(0).res_count, 32);
  EXPECT_EQ(size(31).width, 32);
}

TEST_F(AListing, GetsARepeatedSizeOnceAndNoneOfItsFurtherRates) {
  takeAll({kMjpeg, kVga});
  takeRate("30.000");
  take(kVga);
  takeRate("15.000");
  EXPECT_EQ(format(0).res_count, 1);
  EXPECT_EQ(size(0).fps_count, 1);
}

TEST_F(AListing, GetsARateInItsSize) {
  takeAll({kMjpeg, kVga});
  EXPECT_TRUE(takeRate("30.000"));
  EXPECT_TRUE(takeRate("7.5"));
  ASSERT_EQ(size(0).fps_count, 2);
  EXPECT_EQ(size(0).fps[0], 30.0F);
  EXPECT_EQ(size(0).fps[1], 7.5F);
}

TEST_F(AListing, GetsARateOfZero) {
  takeAll({kMjpeg, kVga});
  EXPECT_TRUE(takeRate("0.000"));
  EXPECT_EQ(size(0).fps_count, 1);
}

TEST_F(AListing, GetsNoRateFromALineWithoutOne) {
  takeAll({kMjpeg, kVga, "Interval: Discrete 0.033s\n", "Interval: Discrete (30.000fps)\n", "Interval\n"});
  EXPECT_EQ(size(0).fps_count, 0);
}

TEST_F(AListing, Gets30RatesAtMost) {
  takeAll({kMjpeg, kVga});
  testing::internal::CaptureStderr();
  for (int i = 1; i <= 31; ++i) EXPECT_TRUE(takeRate(std::to_string(i) + ".000"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "device[3]:0001 support(31.00 fps) over max(30) fps. list define\n");
  EXPECT_EQ(size(0).fps_count, 30);
  EXPECT_EQ(size(0).fps[29], 30.0F);
}

TEST_F(AListing, EndsAtARepeatedRate) {
  takeAll({kMjpeg, kVga});
  EXPECT_TRUE(takeRate("30.000"));
  EXPECT_FALSE(takeRate("30.000"));
  EXPECT_EQ(size(0).fps_count, 1);
}

TEST_F(AListing, ContinuesAfterARepeatedRateThatSinglePrecisionChanges) {
  takeAll({kMjpeg, kVga});
  EXPECT_TRUE(takeRate("29.970"));
  EXPECT_TRUE(takeRate("29.970"));
  EXPECT_EQ(size(0).fps_count, 2);
}

TEST_F(AListing, IsOver60FromTheFirstRateAbove) {
  takeAll({kMjpeg, kVga});
  takeRate("59.999");
  takeRate("60.000");
  EXPECT_FALSE(listing.hasRateOver60());
  takeRate("60.001");
  EXPECT_TRUE(listing.hasRateOver60());
}

TEST_F(AListing, ContinuesAtALineThatItDoesNotKnow) {
  EXPECT_TRUE(takeAll({"ioctl: VIDIOC_ENUM_FMT\n", "\tName        : Motion-JPEG\n", "no colon\n", "\n", ""}));
  EXPECT_EQ(listing.formatCount(), 0);
}

}  // namespace
}  // namespace usbdev
