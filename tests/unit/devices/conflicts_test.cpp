// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which devices cannot stream at the same time, by their ports and bridges.
#include "devices/conflicts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/text.h"
#include "plain_answers.h"
#include "plain_config.h"

namespace usbdev {
namespace {

class OnAHost : public testing::Test {
 protected:
  OnAHost() { plain_answers = {}; }

  HostAnswers host;
};

/// A camera in port 3-1.2, on node 2.
class ACamera : public OnAHost {
 protected:
  bool conflictsWith(const char *slot, int vnode = 4) {
    return ConflictTest(host, "3-1.2", 2).conflictsWith(slot, vnode);
  }
};

TEST_F(ACamera, ConflictsWithOthersOnItsRootPort) {
  EXPECT_TRUE(conflictsWith("3-1.4"));
  EXPECT_TRUE(conflictsWith("3-1"));
  EXPECT_TRUE(conflictsWith("3-1.4.1"));
}

TEST_F(ACamera, DoesNotConflictWithThoseOnOtherRootPorts) {
  EXPECT_FALSE(conflictsWith("3-2.2"));
  EXPECT_FALSE(conflictsWith("3-11.2"));
  EXPECT_FALSE(conflictsWith("3-"));
  EXPECT_FALSE(conflictsWith(""));
}

TEST_F(ACamera, ConflictsWithAnyOtherOnAHostOfOneChannel) {
  plain_answers.one_channel_limited = true;
  EXPECT_TRUE(conflictsWith("4-2"));
}

TEST_F(ACamera, ConflictsWithOthersBehindItsBridge) {
  plain_answers.bridges = {{2, "/devices/a"}, {4, "/devices/a"}, {5, "/devices/b"}};
  EXPECT_TRUE(conflictsWith("4-2", 4));
  EXPECT_FALSE(conflictsWith("4-2", 5));
  EXPECT_FALSE(conflictsWith("4-2", 6));
}

TEST_F(ACamera, BehindNoBridgeConflictsOnlyByItsPort) {
  plain_answers.bridges = {{4, "/devices/a"}};
  EXPECT_FALSE(conflictsWith("4-2", 4));
}

TEST_F(ACamera, OfSeveralNodesIsBehindTheBridgeOfTheFirstThatHasOne) {
  plain_answers.bridges = {{7, "/devices/a"}, {8, "/devices/b"}, {4, "/devices/b"}, {5, "/devices/a"}};
  ConflictTest test(host, "3-1.2", 2);
  test.addNode(7);
  test.addNode(8);
  EXPECT_FALSE(test.conflictsWith("4-2", 4));
  EXPECT_TRUE(test.conflictsWith("4-2", 5));
}

/// The same test, of a caller that knows its own bridge.
class ACallersCamera : public OnAHost {
 protected:
  bool conflictsWith(const char *slot, int vnode, const char *bridge) {
    other_slot = slot;
    const bool conflicts = conflictsOnBridge(host, other_slot.data(), "3-1.2", vnode, bridge);
    other_slot = other_slot.c_str();
    return conflicts;
  }

  std::string other_slot;
};

TEST_F(ACallersCamera, IsShownTheOthersRootPort) {
  EXPECT_TRUE(conflictsWith("3-1.4.1", 4, nullptr));
  EXPECT_EQ(other_slot, "3-1");
  EXPECT_FALSE(conflictsWith("4-2", 4, nullptr));
  EXPECT_EQ(other_slot, "4-2");
}

TEST_F(ACallersCamera, ConflictsOnTheGivenBridge) {
  plain_answers.bridges = {{4, "/devices/a"}};
  EXPECT_TRUE(conflictsWith("4-2", 4, "/devices/a"));
  EXPECT_FALSE(conflictsWith("4-2", 4, "/devices/b"));
  EXPECT_FALSE(conflictsWith("4-2", 5, "/devices/a"));
  EXPECT_FALSE(conflictsWith("4-2", 4, nullptr));
}

/// Ten cameras on one root port; the tested one is channel 3.
class TenCameras : public OnAHost {
 protected:
  TenCameras() {
    for (int i = 0; i < kChannels; ++i) {
      channels[i].exists = 1;
      channels[i].vnode = 20 + i;
      formatText(channels[i].usbslot, "3-1.%d", i);
    }
  }
  std::vector<int> conflicting() {
    ConflictTest test(host, channels[3].usbslot, channels[3].vnode);
    ChannelMarks marks;
    markConflicts(test, channels, 3, marks);
    std::vector<int> numbers;
    for (int i = 0; i < kChannels; ++i) {
      if (marks[i]) numbers.push_back(i);
    }
    return numbers;
  }

  ChannelSnapshots channels;
};

TEST_F(TenCameras, AllConflictButTheTestedOne) {
  EXPECT_THAT(conflicting(), testing::ElementsAre(0, 1, 2, 4, 5, 6, 7, 8, 9));
}

TEST_F(TenCameras, ConflictWhenAttachedWithAVideoNodeOnly) {
  channels[0].exists = 0;
  channels[1].vnode = -1;
  channels[2].exists = -1;
  EXPECT_THAT(conflicting(), testing::ElementsAre(2, 4, 5, 6, 7, 8, 9));
}

TEST_F(TenCameras, WaitForAnotherWhereTheyAreMarked) {
  PlainConfig config;
  const ChannelMarks marks = {true, false, false, false, false, false, false, false, false, true};
  writeParked(opened(config), marks, 3);
  EXPECT_EQ(config, (PlainConfig{{"ch0/conflictch", "3"}, {"ch9/conflictch", "3"}}));
}

}  // namespace
}  // namespace usbdev
