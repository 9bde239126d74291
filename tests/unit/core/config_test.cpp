// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How a section's keys are read and written.
#include "core/config.h"

#include <gtest/gtest.h>

#include <string>

#include "plain_config.h"

namespace usbdev {
namespace {

class ASection : public testing::Test {
 protected:
  Section section() { return opened(config).channel(9); }

  PlainConfig config;
};

TEST_F(ASection, HasTheNameOfItsChannel) {
  opened(config).channel(0).set(keys::exists, 1);
  section().set(keys::exists, 2);
  EXPECT_EQ(config, (PlainConfig{{"ch0/exists", "1"}, {"ch9/exists", "2"}}));
}

TEST_F(ASection, ReadsAMissingNumberAsItsUsualDefaultOrTheGivenOne) {
  EXPECT_EQ(section().get(keys::height), 720);
  EXPECT_EQ(section().get(keys::height, 99), 99);
  config["ch9/video/height"] = "480";
  EXPECT_EQ(section().get(keys::height, 99), 480);
}

TEST_F(ASection, ReadsAMissingTextAsItsUsualDefault) {
  char rate[16];
  section().get(keys::framerate, rate);
  EXPECT_STREQ(rate, "30.00");
}

TEST_F(ASection, TerminatesATextThatFillsItsBuffer) {
  char tag[16];
  config["ch9/vtag"] = std::string(15, 't');
  section().get(keys::vtag, tag);
  EXPECT_EQ(tag, std::string(15, 't'));
  config["ch9/vtag"] = std::string(16, 't');
  section().get(keys::vtag, tag);
  EXPECT_EQ(tag, std::string(15, 't'));
}

TEST_F(ASection, LeavesNothingOfWhatWasInTheBuffer) {
  char tag[16] = "###############";
  config["ch9/vtag"] = "short";
  section().get(keys::vtag, tag);
  EXPECT_EQ(std::string(tag, sizeof tag), "short" + std::string(11, '\0'));
}

TEST_F(ASection, CarriesACodecThatIsNeitherThrough) {
  EXPECT_EQ(section().get(keys::vcodec), Codec::mjpeg);
  config["ch9/video/vcodec"] = "7";
  const Codec codec = section().get(keys::vcodec);
  opened(config).channel(0).set(keys::vcodec, codec);
  EXPECT_EQ(config["ch0/video/vcodec"], "7");
}

}  // namespace
}  // namespace usbdev
