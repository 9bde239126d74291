// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/support.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Pair;
using usbdevctl::EncodingFacts;
using usbdevctl::encodingLack;
using usbdevctl::isUsable;
using usbdevctl::SupportFacts;
using usbdevctl::surveyFormats;
using usbdevctl::unsupportedReason;

// A host that may encode.
class TheEncoding : public testing::Test {
 protected:
  TheEncoding() {
    facts_.package = facts_.agent = facts_.driver = true;
    facts_.enabled = "TRUE";
  }

  std::string lack() const { return encodingLack(facts_)->why; }

  EncodingFacts facts_;
};

TEST_F(TheEncoding, LacksNothingWhereTheLibraryPermitsIt) {
  facts_ = {};
  facts_.permitted = true;
  EXPECT_EQ(encodingLack(facts_), std::nullopt);
}

TEST_F(TheEncoding, LacksTheFirstThingThatTheLibraryAsksFor) {
  EXPECT_EQ(lack(), "the host does not say why");
  facts_.driver = false;
  EXPECT_EQ(lack(), "the driver of the host's graphics is not installed");
  facts_.agent = false;
  EXPECT_EQ(lack(), "the codec package Halvane has no camera_agent.sh");
  facts_.enabled = "FALSE";
  EXPECT_EQ(lack(), "the codec package Halvane is not enabled");
  facts_.enabled.reset();
  EXPECT_EQ(lack(), "the codec package Halvane is not enabled");
  facts_.package = false;
  EXPECT_EQ(lack(), "the codec package Halvane is not installed");
}

TEST_F(TheEncoding, IsNeverPossibleOnArm) {
  facts_ = {};
  facts_.arm = true;
  EXPECT_EQ(lack(), "ARM hosts never encode");
}

// A camera that lists raw pictures only, on a host without the codec package.
class AnUnsupportedCamera : public testing::Test {
 protected:
  AnUnsupportedCamera() {
    facts_.device = "Cam\x1b";
    facts_.survey = surveyFormats("Pixel Format: 'YUYV'\n");
  }

  std::string why() const { return unsupportedReason(facts_).why; }

  SupportFacts facts_;
};

TEST_F(AnUnsupportedCamera, ThatIsListedIsShownTheWholeLine) {
  facts_.listed = true;
  EXPECT_EQ(why(), "its name is a line of /etc/config/.usbnosupportlist.dat: Cam\\x1b");
}

TEST_F(AnUnsupportedCamera, IsListedOrOffersNoUsableFormat) {
  EXPECT_FALSE(isUsable(facts_));
  facts_.usable_formats = 1;
  EXPECT_TRUE(isUsable(facts_));
  facts_.listed = true;
  EXPECT_FALSE(isUsable(facts_));
}

TEST_F(AnUnsupportedCamera, WithoutMjpgNeedsTheEncoding) {
  EXPECT_EQ(why(),
            "it lists YUYV and no MJPG, and the host may not encode it: the codec package Halvane is not installed");
  EXPECT_EQ(unsupportedReason(facts_).remedy,
            "install and enable the codec package Halvane, then plug the camera in again");
  EXPECT_THAT(unsupportedReason(facts_).values, Contains(Pair("lack_cause", "encoding_not_installed")));
}

TEST_F(AnUnsupportedCamera, WithoutMjpgAndYuyvIsOfNoUse) {
  facts_.survey = surveyFormats("Pixel Format: 'GREY'\n");
  EXPECT_EQ(why(), "it lists GREY, and the library uses MJPG and YUYV only");
}

TEST_F(AnUnsupportedCamera, ThatListsNothingIsReportedSo) {
  facts_.survey = {};
  EXPECT_EQ(why(), "v4l2-ctl lists no format for it");
}

TEST_F(AnUnsupportedCamera, MayBeOneWhoseListingTheLibraryDoesNotRead) {
  facts_.survey = surveyFormats("[0]: 'MJPG' (Motion-JPEG, compressed)\n");
  EXPECT_THAT(why(), HasSubstr("in a layout that the library does not read"));
}

TEST_F(AnUnsupportedCamera, MayHaveBecomeUsableSince) {
  facts_.usable_formats = 1;
  EXPECT_EQ(why(), "it was found unsupported earlier; now it offers formats that can be used");
}

}  // namespace
