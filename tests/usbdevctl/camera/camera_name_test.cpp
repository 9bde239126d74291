// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera_name.h"

#include <gtest/gtest.h>

#include "some_cameras.h"

namespace {

using usbdevctl::CameraName;
using usbdevctl::Cameras;
using usbdevctl::ChannelState;
using usbdevctl::namedCameras;
using usbdevctl::nameText;
using usbdevctl::readCameraName;
using By = CameraName::By;

/// What the text names, or what is wrong with it.
std::string meaning(const std::string &text, By bare_number = By::profile) {
  std::string wrong;
  const auto name = readCameraName(text, bare_number, wrong);
  return name ? nameText(*name) : wrong;
}

TEST(AName, IsAPortAChannelOrAProfile) {
  EXPECT_EQ(meaning("3-1.2"), "port 3-1.2");
  EXPECT_EQ(meaning("ch9"), "channel 9");
  EXPECT_EQ(meaning("pf3"), "profile 3");
}

TEST(ABareNumber, IsWhatTheCommandIsAbout) {
  EXPECT_EQ(meaning("3", By::profile), "profile 3");
  EXPECT_EQ(meaning("9", By::channel), "channel 9");
  EXPECT_EQ(meaning("64", By::video_node), "video node 64");
  EXPECT_EQ(meaning("/dev/video64", By::profile), "video node 64");
}

TEST(ANumber, AboveTheLastOneIsRefused) {
  EXPECT_EQ(meaning("4"), "profile must be 0 to 3, not 4");
  EXPECT_EQ(meaning("pf4"), "profile must be 0 to 3, not 4");
  EXPECT_EQ(meaning("ch10"), "channel must be 0 to 9, not 10");
  EXPECT_EQ(meaning("10", By::channel), "channel must be 0 to 9, not 10");
  EXPECT_EQ(meaning("2147483648", By::video_node), "video node must be at least 0, not 2147483648");
}

TEST(AnotherText, IsRefusedWithAnExampleOfAName) {
  for (const char *text : {"", "ch", "chx", "cam", "-1", "ch 1", "CH1"}) {
    EXPECT_EQ(meaning(text),
              "'" + std::string(text) + "' is not a port (3-1.2), channel (ch2), profile (pf1) or number");
  }
}

TEST(APort, HasAtMost127Bytes) {
  const std::string longest = "3-" + std::string(125, '1');
  EXPECT_EQ(meaning(longest), "port " + longest);
  EXPECT_EQ(meaning(longest + "1"), "the port's name is longer than 127 bytes");
}

class TheCameras : public testing::Test {
 protected:
  static constexpr int kNobody = 100;

  /// The channel of the one camera with the name; below zero, how many there are.
  int named(const std::string &text, By bare_number = By::profile) const {
    std::string wrong;
    const Cameras found = namedCameras(cameras_, *readCameraName(text, bare_number, wrong));
    if (found.empty()) return kNobody;
    return found.size() == 1 ? found.front().channel : -static_cast<int>(found.size());
  }

  Cameras cameras_ = {someCamera(0, "3-1", 2), someCamera(4, "3-1.2", std::nullopt)};
};

TEST_F(TheCameras, AreFoundByEachName) {
  cameras_[1].row.video_node = 6;
  EXPECT_EQ(named("3-1"), 0);
  EXPECT_EQ(named("3-1.2"), 4);
  EXPECT_EQ(named("ch4"), 4);
  EXPECT_EQ(named("2"), 0);
  EXPECT_EQ(named("6", By::video_node), 4);
}

TEST_F(TheCameras, AreNotFoundByAnotherName) {
  for (const char *name : {"3-2", "3-1.", "ch1", "pf0"}) EXPECT_EQ(named(name), kNobody) << name;
}

TEST_F(TheCameras, AttachedHideThoseThatWereInTheirPortBefore) {
  cameras_.push_back(someCamera(5, "3-1.2", 1, ChannelState::unplugged));
  EXPECT_EQ(named("3-1.2"), 4);
}

TEST_F(TheCameras, ThatAreAwayAreNotChosenFrom) {
  cameras_[0] = someCamera(0, "3-2", 0, ChannelState::unplugged);
  cameras_[1] = someCamera(4, "3-2", 1, ChannelState::displaced);
  EXPECT_EQ(named("3-2"), -2);
}

}  // namespace
