// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which of the channels that wait takes over.
#include "devices/successor_choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/text.h"

namespace usbdev {
namespace {

constexpr char kNow[] = "2024-03-05 08:15:00";

/// Channels that wait, each attached, with a profile and switched on.
class AChoice : public testing::Test {
 protected:
  ChannelSnapshot &waiting(int i, int profile, const std::string &created) {
    marks[i] = true;
    ChannelSnapshot &channel = channels[i];
    channel.exists = 1;
    channel.profile = profile;
    channel.slot_switch = 1;
    channel.vnode = 20 + i;
    formatText(channel.usbslot, "3-%d", i);
    copyText(channel.createtime, created.c_str());
    return channel;
  }
  Successor choose() const { return chooseSuccessor(channels, marks, kNow); }
  std::vector<int> nodes() const {
    const Successor successor = choose();
    return {successor.nodes, successor.nodes + successor.node_count};
  }

  ChannelSnapshots channels;
  ChannelMarks marks = {};
};

TEST_F(AChoice, WithoutWaitingChannelsIsNone) {
  const Successor successor = choose();
  EXPECT_EQ(successor.channel, -1);
  EXPECT_EQ(successor.profile, -1);
  EXPECT_EQ(successor.node_count, 0);
}

TEST_F(AChoice, IsTheOneThatWaits) {
  waiting(4, 2, "2024-01-01 00:00:00");
  const Successor successor = choose();
  EXPECT_EQ(successor.channel, 4);
  EXPECT_EQ(successor.profile, 2);
  EXPECT_STREQ(successor.slot, "3-4");
  EXPECT_THAT(nodes(), testing::ElementsAre(24));
}

TEST_F(AChoice, IsNeverAChannelThatDoesNotWait) {
  waiting(4, 2, "2024-01-01 00:00:00");
  marks[4] = false;
  EXPECT_EQ(choose().channel, -1);
}

TEST_F(AChoice, IsTheOneWithTheEarliestProfile) {
  waiting(1, 0, "2024-02-02 00:00:00");
  waiting(5, 1, "2024-01-01 00:00:00");
  waiting(9, 2, "2024-01-01 00:00:01");
  EXPECT_EQ(choose().channel, 5);
}

TEST_F(AChoice, OfEquallyOldOnesIsTheSmallerProfile) {
  waiting(1, 2, "2024-01-01 00:00:00");
  waiting(5, 1, "2024-01-01 00:00:00");
  waiting(9, 3, "2024-01-01 00:00:00");
  EXPECT_EQ(choose().channel, 5);
}

TEST_F(AChoice, StaysWithTheFirstOfTwoThatAreAlike) {
  waiting(1, 1, "2024-01-01 00:00:00");
  waiting(5, 1, "2024-01-01 00:00:00");
  EXPECT_EQ(choose().channel, 1);
}

TEST_F(AChoice, IsTheFirstOneWhenNoneHasATimeBeforeNow) {
  waiting(1, 3, "2024-03-05 08:15:01");
  waiting(5, 0, "2025-01-01 00:00:00");
  EXPECT_EQ(choose().channel, 1);
}

TEST_F(AChoice, OfThisVerySecondIsTheSmallerProfile) {
  waiting(1, 3, kNow);
  waiting(5, 0, kNow);
  EXPECT_EQ(choose().channel, 5);
}

TEST_F(AChoice, WithoutATimeGivesWayToOneWithATime) {
  waiting(1, 0, "");
  waiting(5, 1, "2024-01-01 00:00:00");
  EXPECT_EQ(choose().channel, 5);
}

TEST_F(AChoice, IsNeverADetachedChannel) {
  waiting(4, 2, "2024-01-01 00:00:00").exists = 0;
  EXPECT_EQ(choose().channel, -1);
}

TEST_F(AChoice, MayBeOneWhoseCameraAnotherPortTookOver) {
  waiting(4, 2, "2024-01-01 00:00:00").exists = -1;
  EXPECT_EQ(choose().channel, 4);
}

TEST_F(AChoice, IsNeverAChannelWithoutAProfile) {
  waiting(4, -1, "2024-01-01 00:00:00");
  EXPECT_EQ(choose().channel, -1);
}

TEST_F(AChoice, IsNeverAChannelThatIsNotSwitchedOn) {
  waiting(4, 2, "2024-01-01 00:00:00").slot_switch = 0;
  waiting(5, 2, "2024-01-01 00:00:00").slot_switch = -1;
  waiting(6, 2, "2024-01-01 00:00:00").slot_switch = 2;
  EXPECT_EQ(choose().channel, -1);
}

TEST_F(AChoice, KeepsThePortOfTheFirstOneWhoeverReplacesIt) {
  waiting(1, 0, "2024-02-02 00:00:00");
  waiting(5, 1, "2024-01-01 00:00:00");
  EXPECT_EQ(choose().channel, 5);
  EXPECT_STREQ(choose().slot, "3-1");
}

TEST_F(AChoice, KeepsTheNodeOfEveryOneOnTheWay) {
  waiting(1, 0, "2024-03-03 00:00:00");
  waiting(3, 0, "2024-04-04 00:00:00");
  waiting(5, 1, "2024-02-02 00:00:00");
  waiting(9, 1, "2024-01-01 00:00:00");
  EXPECT_THAT(nodes(), testing::ElementsAre(21, 25, 29));
}

TEST_F(AChoice, MayBeMadeTenTimes) {
  for (int i = 0; i < kChannels; ++i) waiting(i, 1, "2024-01-01 00:00:0" + std::to_string(9 - i));
  EXPECT_EQ(choose().channel, 9);
  EXPECT_EQ(choose().node_count, 10);
}

}  // namespace
}  // namespace usbdev
