// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a camera's formats listing becomes in the capability table.
#include "encoding_host.h"
#include "formats_fixture.h"

namespace contract {
namespace {

class AFormatsListing : public FormatsTest {
 protected:
  static Listing mjpeg() { return Listing().format("MJPG").size(640, 480); }
  static std::string interval(const std::string &value) { return "\t\t\tInterval: " + value + "\n"; }
  // The formats of a listing with this text after the first size of an MJPEG format.
  std::string after(const std::string &text) {
    EXPECT_EQ(read(mjpeg().text() + text), 1);
    return format(0);
  }
};

TEST_F(AFormatsListing, BecomesFormatsSizesAndRatesInItsOrder) {
  EXPECT_EQ(read(mjpeg().rate("30.000").rate("5.000").size(320, 240).rate("60.000").text()), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@30,5 320x240@60");
  EXPECT_EQ(message, "");
}

TEST_F(AFormatsListing, LeavesTheRecordsAfterItsFormatsZero) {
  read(mjpeg().rate("30.000").text());
  for (size_t i = 1; i < USBDEV_FORMATS; ++i) EXPECT_TRUE(isZero(i)) << i;
}

TEST_F(AFormatsListing, WithoutAUsableFormatLeavesTheTableUntouched) {
  EXPECT_EQ(read(Listing().format("H264").size(640, 480).rate("30.000").text()), 0);
  EXPECT_TRUE(isUntouched(0));
  EXPECT_EQ(over60, 0);
}

TEST_F(AFormatsListing, KeepsRawFormatsOnlyWhereTheHostMayEncode) {
  const std::string text = Listing().format("YUYV").size(640, 480).format("MJPG").size(320, 240).text();
  EXPECT_EQ(read(text), 1);
  EXPECT_EQ(format(0), "#1 codec 1: 320x240");
  allowEncoding(host);
  EXPECT_EQ(read(text), 2);
  EXPECT_EQ(format(0), "#0 codec 0: 640x480");
  EXPECT_EQ(format(1), "#1 codec 1: 320x240");
}

TEST_F(AFormatsListing, KeepsTheCamerasOwnIndex) {
  EXPECT_EQ(read("Index : 17\nPixel Format: 'MJPG' (compressed)\n"), 1);
  EXPECT_EQ(format(0), "#17 codec 1:");
}

TEST_F(AFormatsListing, IgnoresLinesWithoutAColonAndOtherKeys) {
  EXPECT_EQ(after("no colon\nName: x\nsize: Discrete 1x1\nStepwise: 2x2\nInterval\n"), "#0 codec 1: 640x480");
}

TEST_F(AFormatsListing, IgnoresSizesOfAFormatThatItDoesNotKeep) {
  EXPECT_EQ(after(Listing().format("H264").size(800, 600).rate("30.000").text()), "#0 codec 1: 640x480");
}

TEST_F(AFormatsListing, EndsAFormatAtTheNextIndex) {
  EXPECT_EQ(after("Index: 1\n\t\tSize: Discrete 800x600\n" + interval("Discrete 0.033s (30.000 fps)")),
            "#0 codec 1: 640x480");
}

TEST_F(AFormatsListing, EndsAFormatAtAPixelFormatThatItDoesNotKeep) {
  EXPECT_EQ(after("Pixel Format: 'H264'\nSize: Discrete 800x600\n" + interval("Discrete 0.033s (30.000 fps)")),
            "#0 codec 1: 640x480");
}

TEST_F(AFormatsListing, ForgetsTheSizeWhenAFormatOpens) {
  EXPECT_EQ(read(mjpeg().text() + "Pixel Format: 'MJPG'\n" + interval("Discrete 0.033s (30.000 fps)")), 2);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480");
  EXPECT_EQ(format(1), "#0 codec 1:");
}

TEST_F(AFormatsListing, ReadsTheFourCharactersAfterTheQuote) {
  EXPECT_EQ(read("Index: 0\nPixel Format: MJPG\n"), 0);
  EXPECT_EQ(read("Index: 0\nPixel Format: 'mjpg'\n"), 0);
  EXPECT_EQ(read("Index: 0\nPixel Format: 'MJPGX'\n"), 1);
  EXPECT_EQ(read("Index: 0\nPixel Format: '\n"), 0);
  EXPECT_EQ(read("Index: 0\nPixel Format:\n"), 0);
}

TEST_F(AFormatsListing, ReadsASizeFromTheTenthCharacterOn) {
  EXPECT_EQ(after("Size: Stepwise 800x600\nSize: 123456789320x240\n"), "#0 codec 1: 640x480 800x600 320x240");
}

TEST_F(AFormatsListing, IgnoresASizeWithoutAnXAndItsRates) {
  for (const char *size : {"Size: Discrete 800\n", "Size: 8x6\n", "Size:\n", "Size: Discrete\n"}) {
    EXPECT_EQ(after(size + interval("Discrete 0.033s (30.000 fps)")), "#0 codec 1: 640x480") << size;
  }
}

TEST_F(AFormatsListing, KeepsASizeOfNothing) {
  EXPECT_EQ(after("Size: Discrete 0x0\nSize: Discrete xyz\n"), "#0 codec 1: 640x480 0x0");
}

TEST_F(AFormatsListing, KeepsARepeatedSizeOnceWithItsFirstRates) {
  EXPECT_EQ(read(mjpeg().rate("30.000").size(320, 240).size(640, 480).rate("15.000").rate("5.000").text()), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@30 320x240");
}

TEST_F(AFormatsListing, KeepsTheSameSizeOfTwoFormatsTwice) {
  EXPECT_EQ(read(mjpeg().format("MJPG").size(640, 480).rate("30.000").text()), 2);
  EXPECT_EQ(format(1), "#1 codec 1: 640x480@30");
}

TEST_F(AFormatsListing, IgnoresRatesBeforeTheFirstSize) {
  EXPECT_EQ(read(Listing().format("MJPG").rate("30.000").size(640, 480).text()), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480");
}

TEST_F(AFormatsListing, IgnoresAnIntervalWithoutParenthesisOrBlank) {
  for (const char *value : {"Discrete 0.033s 30.000 fps", "Discrete 0.033s (30.000)", ""}) {
    EXPECT_EQ(after(interval(value) + "Size: Discrete 320x240\n"), "#0 codec 1: 640x480 320x240") << value;
  }
}

TEST_F(AFormatsListing, ReadsAsMuchOfARateAsIsANumber) {
  const std::string start = "Discrete 0.033s (";
  EXPECT_EQ(after(interval(start + "9.25x fps)") + interval(start + "30.5.5 fps)") + interval(start + "1e1 fps)") +
                  interval(start + "-5.000 fps)") + interval(start + "+7 fps)") + interval(start + " fps)")),
            "#0 codec 1: 640x480@9.25,30.5,10,-5,7,0");
}

TEST_F(AFormatsListing, CutsARateAt15Characters) {
  after(interval("Discrete 0.033s (123456789012345 fps)") + interval("Discrete 0.033s (2234567890123456 fps)"));
  EXPECT_EQ(table[0].res[0].fps[0], 123456789012345.0F);
  EXPECT_EQ(table[0].res[0].fps[1], 223456789012345.0F);
}

TEST_F(AFormatsListing, StopsAltogetherAtARepeatedRate) {
  EXPECT_EQ(read(mjpeg().rate("30.000").rate("15.000").rate("30.000").rate("5.000").size(1, 1).format("MJPG").text()),
            1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@30,15");
}

TEST_F(AFormatsListing, KeepsARepeatedRateThatSinglePrecisionChanges) {
  EXPECT_EQ(read(mjpeg().rate("29.970").rate("29.970").size(320, 240).text()), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@29.97,29.97 320x240");
}

TEST_F(AFormatsListing, MayRepeatARateForAnotherSize) {
  EXPECT_EQ(read(mjpeg().rate("30.000").size(320, 240).rate("30.000").text()), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@30 320x240@30");
}

TEST_F(AFormatsListing, IsOver60FromTheFirstRateAbove) {
  read(mjpeg().rate("60.000").text());
  EXPECT_EQ(over60, 0);
  read(mjpeg().rate("60.100").text());
  EXPECT_EQ(over60, 1);
}

TEST_F(AFormatsListing, IsNotOver60ByAFormatThatItDoesNotKeep) {
  read(Listing().format("YUYV").size(640, 480).rate("120.000").format("MJPG").size(640, 480).rate("30.000").text());
  EXPECT_EQ(over60, 0);
}

class AnOverlongListing : public FormatsTest {};

TEST_F(AnOverlongListing, Keeps32SizesAndReportsTheNext) {
  Listing listing = Listing().format("MJPG");
  for (int i = 1; i <= 32; ++i) listing.size(i, 100);
  EXPECT_EQ(read(listing.text()), 1);
  EXPECT_EQ(message, "");
  listing.size(33, 100).rate("30.000");
  EXPECT_EQ(read(listing.text()), 1);
  EXPECT_EQ(table[0].res_count, 32);
  EXPECT_EQ(table[0].res[31].width, 32);
  EXPECT_EQ(table[0].res[31].fps_count, 0);
  EXPECT_EQ(message, "device[2]:0001 support(33x100) over max(32) res. list define\n");
}

TEST_F(AnOverlongListing, ReportsASizeBeyondThe32ndEvenWhenItIsRepeated) {
  Listing listing = Listing().format("MJPG");
  for (int i = 1; i <= 32; ++i) listing.size(i, 100);
  read(listing.size(1, 100).text());
  EXPECT_EQ(message, "device[2]:0001 support(1x100) over max(32) res. list define\n");
}

TEST_F(AnOverlongListing, NamesTheCodecOfARawFormatInItsReport) {
  allowEncoding(host);
  Listing listing = Listing().format("YUYV");
  for (int i = 1; i <= 33; ++i) listing.size(i, 100);
  read(listing.text());
  EXPECT_EQ(message, "device[2]:0000 support(33x100) over max(32) res. list define\n");
}

TEST_F(AnOverlongListing, Keeps30RatesAndReportsTheNext) {
  Listing listing = Listing().format("MJPG").size(640, 480);
  for (int i = 1; i <= 30; ++i) listing.rate(std::to_string(i) + ".000");
  listing.rate("99.126").size(320, 240).rate("7.500");
  EXPECT_EQ(read(listing.text()), 1);
  EXPECT_EQ(table[0].res[0].fps_count, 30);
  EXPECT_EQ(table[0].res[0].fps[29], 30.0F);
  EXPECT_EQ(table[0].res[1].fps[0], 7.5F);
  EXPECT_EQ(message, "device[2]:0001 support(99.13 fps) over max(30) fps. list define\n");
  EXPECT_EQ(over60, 0);
}

TEST_F(AnOverlongListing, KeepsEightFormats) {
  Listing listing;
  for (int i = 1; i <= 9; ++i) listing.format("MJPG").size(i, 100).rate("30.000");
  EXPECT_EQ(read(listing.text()), 8);
  EXPECT_EQ(format(0), "#0 codec 1: 1x100@30");
  EXPECT_EQ(format(7), "#7 codec 1: 8x100@30");
}

TEST_F(AnOverlongListing, IsReadUpToIts1024thLine) {
  std::string text = "Index: 0\nPixel Format: 'MJPG'\nSize: Discrete 640x480\n";
  for (int i = 4; i <= 1023; ++i) text += "filler\n";
  text += "Interval: Discrete 0.033s (30.000 fps)\nInterval: Discrete 0.067s (15.000 fps)\n";
  EXPECT_EQ(read(text), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 640x480@30");
}

TEST_F(AnOverlongListing, HasLinesLongerThanTheBufferReadInPieces) {
  const std::string size = "Size: Discrete 320x240\n";
  EXPECT_EQ(read("Index: 0\nPixel Format: 'MJPG'\n" + std::string(255, 'x') + size + std::string(254, 'x') + size), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 320x240");
}

// The end of such a listing lies in the same buffer as what is left of the longer line before it.
TEST_F(AFormatsListing, WhoseLastLineHasNoCodeOffersNothing) {
  EXPECT_EQ(read("Index: 0\n" + std::string(14, 'x') + "MJPG\nPixel Format:"), 0);
}

TEST_F(AFormatsListing, WhoseLastLineHasNoSizeOffersNoSize) {
  EXPECT_EQ(read("Index: 0\nPixel Format: 'MJPG'\n" + std::string(15, 'x') + "640x480\nSize: Discrete"), 1);
  EXPECT_EQ(format(0), "#0 codec 1:");
}

TEST_F(AnOverlongListing, MayHoldNumbersOfAnyLength) {
  const std::string digits(80, '9');
  EXPECT_EQ(read("Index: 0\nPixel Format: 'MJPG'\nSize: Discrete " + digits + "x-" + digits +
                 "\nInterval: Discrete 0.033s (" + digits + ".000 fps)\n"),
            1);
  EXPECT_EQ(table[0].res_count, 1);
  EXPECT_EQ(table[0].res[0].fps_count, 1);
  EXPECT_EQ(over60, 1);
}

}  // namespace
}  // namespace contract
