#include "explain/collision.h"

#include <gtest/gtest.h>

namespace {

using usbdevctl::afterAssignment;
using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Collision;
using usbdevctl::Collisions;
using usbdevctl::rootPort;
using usbdevctl::streamingRival;
using usbdevctl::streamLackText;
using usbdevctl::streams;
using usbdevctl::waitingSince;

ChannelRow streaming() {
  ChannelRow row;
  row.state = ChannelState::plugged;
  row.profile = 2;
  row.slot_switch = true;
  return row;
}

TEST(ARootPort, IsThePartBeforeTheFirstDot) {
  EXPECT_EQ(rootPort("3-1.2.4"), "3-1");
  EXPECT_EQ(rootPort("3-1"), "3-1");
}

TEST(ACamera, StreamsUnlessSomethingKeepsItFromThat) {
  ChannelRow row = streaming();
  EXPECT_TRUE(streams(row));
  row.slot_switch.reset();  // a switch that is not stored counts as on
  EXPECT_TRUE(streams(row));
  row.profile.reset();
  EXPECT_FALSE(streams(row));
}

TEST(ACamera, SaysTheFirstThingThatKeepsItFromStreaming) {
  ChannelRow row = streaming();
  EXPECT_EQ(streamLackText(row), "");
  row.slot_switch = false;
  EXPECT_EQ(streamLackText(row), "its port is switched off");
  row.parked_behind = 4;
  EXPECT_EQ(streamLackText(row), "it waits behind channel 4");
  row.supported = false;
  EXPECT_EQ(streamLackText(row), "it is not supported");
  row.state = ChannelState::displaced;
  EXPECT_EQ(streamLackText(row), "it is displaced");
}

TEST(ARival, IsTheFirstStreamingCameraThatACameraCollidesWith) {
  ChannelRows rows;
  Collisions collisions = {};
  rows[2] = rows[5] = rows[7] = streaming();
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
