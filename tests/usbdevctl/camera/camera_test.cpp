// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera.h"

#include <gtest/gtest.h>

#include "some_cameras.h"

namespace {

using usbdevctl::Camera;
using usbdevctl::Cameras;
using usbdevctl::camerasOf;
using usbdevctl::cameraText;
using usbdevctl::changeOutput;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Fields;
using usbdevctl::numberField;

TEST(ACamera, IsNamedByChannelPortNameAndProfile) {
  EXPECT_EQ(cameraText(someCamera(2, "3-1.2", 1)), "channel 2  3-1.2  \"USB Camera\"  profile 1");
  EXPECT_EQ(cameraText(someCamera(0, "3-1", std::nullopt)), "channel 0  3-1  \"USB Camera\"  no profile");
}

TEST(ACamera, ShowsWhenItIsAway) {
  EXPECT_EQ(cameraText(someCamera(2, "3-1.2", 1, ChannelState::unplugged)),
            "channel 2  3-1.2  \"USB Camera\"  profile 1  unplugged");
}

TEST(ACamera, CannotSendItsNameToTheTerminal) {
  Camera camera = someCamera(2, "3-\n", 1);
  camera.row.device = "\x1b[2J";
  EXPECT_EQ(cameraText(camera), "channel 2  3-\\x0a  \"\\x1b[2J\"  profile 1");
}

TEST(TheChannelsThatAreNotFree, AreTheCameras) {
  ChannelRows rows;
  rows[1].state = ChannelState::unplugged;
  rows[3].profile = 2;
  const Cameras cameras = camerasOf(rows);
  ASSERT_EQ(cameras.size(), 2U);
  EXPECT_EQ(cameras[0].channel, 1);
  EXPECT_EQ(cameras[1].channel, 3);
}

TEST(AChange, IsOneLineForPeople) {
  EXPECT_EQ(changeOutput("profile 1 cleared", {}, someCamera(2, "3-1", std::nullopt), false),
            "profile 1 cleared: channel 2  3-1  \"USB Camera\"  no profile\n");
}

TEST(AChange, IsAnObjectWithTheCameraForPrograms) {
  EXPECT_EQ(changeOutput("", Fields().add(numberField("value", 7)), someCamera(2, "3-1", 1), true),
            "{\n  \"schema\": 1,\n  \"value\": 7,\n  \"channel\": 2,\n  \"slot\": \"3-1\",\n"
            "  \"device\": \"USB Camera\",\n  \"profile\": 1,\n  \"profile_name\": \"\"\n}\n");
}

}  // namespace
