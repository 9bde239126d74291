// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/collision.h"

#include <gtest/gtest.h>

#include "some_cameras.h"

namespace {

using usbdevctl::afterAssignment;
using usbdevctl::ChannelRows;
using usbdevctl::Collision;
using usbdevctl::Collisions;
using usbdevctl::rootPort;
using usbdevctl::streamingRival;
using usbdevctl::waitingSince;

TEST(ARootPort, IsThePartBeforeTheFirstDot) {
  EXPECT_EQ(rootPort("3-1.2.4"), "3-1");
  EXPECT_EQ(rootPort("3-1"), "3-1");
}

TEST(ARival, IsTheFirstStreamingCameraThatACameraCollidesWith) {
  ChannelRows rows;
  Collisions collisions = {};
  rows[2] = rows[5] = rows[7] = attachedRow("3-1", 2);
  EXPECT_EQ(streamingRival(rows, 7, collisions), -1);
  collisions[2] = collisions[5] = collisions[7] = Collision::root_port;
  EXPECT_EQ(streamingRival(rows, 7, collisions), 2);
  rows[2].parked_behind = 9;
  EXPECT_EQ(streamingRival(rows, 7, collisions), 5);
  rows[5].profile.reset();
  EXPECT_EQ(streamingRival(rows, 7, collisions), -1);
}

TEST(AnAssignedProfile, MakesTheCamerasWaitThatCollideWithIts) {
  ChannelRows before;
  before[3].parked_behind = 7;
  Collisions collisions = {};
  collisions[1] = collisions[3] = collisions[7] = Collision::controller;
  const ChannelRows rows = afterAssignment(before, 7, 2, collisions);
  EXPECT_EQ(rows[7].profile, 2);
  EXPECT_EQ(rows[7].parked_behind, std::nullopt);
  EXPECT_EQ(rows[1].parked_behind, 7);
  EXPECT_EQ(rows[0].parked_behind, std::nullopt);
  const usbdevctl::Cameras waiting = waitingSince(before, rows, 7);
  ASSERT_EQ(waiting.size(), 1U);
  EXPECT_EQ(waiting[0].channel, 1);
}

}  // namespace
