// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The listings of real cameras.
#include <fstream>
#include <sstream>

#include "encoding_host.h"
#include "formats_fixture.h"

namespace contract {
namespace {

class ARealCamera : public FormatsTest {
 protected:
  int readFile(const std::string &name) {
    std::ifstream file(std::string(CONTRACT_DATA) + "/" + name + ".txt");
    std::ostringstream text;
    text << file.rdbuf();
    EXPECT_FALSE(text.str().empty()) << name;
    return read(text.str());
  }
};

TEST_F(ARealCamera, OfTwoFormatsOffersBothWhereTheHostMayEncode) {
  allowEncoding(host);
  EXPECT_EQ(readFile("two-formats-4-rates"), 2);
  EXPECT_EQ(format(0), "#0 codec 1: 1280x720@30,25,20,15 640x480@30,25,20,15 320x240@30,25,20,15");
  EXPECT_EQ(format(1), "#1 codec 0: 640x480@30 320x240@30");
}

TEST_F(ARealCamera, WithFastRawRatesIsOver60OnlyWhereTheHostMayEncode) {
  EXPECT_EQ(readFile("raw-at-120-fps"), 1);
  EXPECT_EQ(format(0), "#1 codec 1: 1920x1080@30,15 1280x720@45,30,15 640x480@30,15");
  EXPECT_EQ(over60, 0);
  allowEncoding(host);
  EXPECT_EQ(readFile("raw-at-120-fps"), 2);
  EXPECT_EQ(format(0),
            "#0 codec 0: 2592x1944@7.5,3.75 1920x1080@15,7.5 1280x960@30,15 1280x720@30,15 640x480@120,90,60,30 "
            "320x240@120,90,60,30");
  EXPECT_EQ(over60, 1);
}

TEST_F(ARealCamera, OfRawFormatsOnlyNeedsAHostThatMayEncode) {
  EXPECT_EQ(readFile("raw-only"), 0);
  allowEncoding(host);
  EXPECT_EQ(readFile("raw-only"), 1);
  EXPECT_EQ(format(0), "#0 codec 0: 640x480@30,15 352x288@30,15 320x240@30,15 176x144@30,15 160x120@30,15");
}

TEST_F(ARealCamera, WithForeignFormatsOnlyHasNone) {
  allowEncoding(host);
  for (const char *name : {"industrial-no-usable-format", "h264-node", "infrared-node-without-code"}) {
    EXPECT_EQ(readFile(name), 0) << name;
    EXPECT_EQ(message, "") << name;
  }
}

TEST_F(ARealCamera, OfOneFractionalRateHasThatRate) {
  EXPECT_EQ(readFile("one-rate-of-14.985"), 1);
  EXPECT_EQ(format(0), "#0 codec 1: 1280x720@14.985");
  EXPECT_EQ(table[0].res[0].fps[0], 14.985F);
}

TEST_F(ARealCamera, OfThreeFormatsOffersTheTwoThatCanBeUsed) {
  allowEncoding(host);
  EXPECT_EQ(readFile("three-formats-19-sizes"), 2);
  EXPECT_EQ(table[0].codec, 0);
  EXPECT_EQ(table[0].res_count, 19);
  EXPECT_EQ(table[0].res[18].width, 2304);
  EXPECT_EQ(table[1].codec, 1);
  EXPECT_EQ(table[1].index, 2);
  EXPECT_EQ(table[1].res_count, 17);
}

TEST_F(ARealCamera, WhoseListingLacksTheFirstLineIsReadAsAnyOther) {
  EXPECT_EQ(readFile("stereo-without-first-line"), 1);
  EXPECT_EQ(format(0), "#1 codec 1: 1280x720@30,25,15 800x600@30 640x360@60 640x480@30,15 352x288@30,15 320x240@30,15");
}

}  // namespace
}  // namespace contract
