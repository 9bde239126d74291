// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channel a device that comes or goes belongs to.
#include <ostream>
#include <vector>

#include "hotplug_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::Values;

struct Channel {
  int number;
  int exists;
  int profile;
  const char *slot;
  const char *name;
};

// The device is "HD Webcam" in port 1-1.
struct Choice {
  const char *rule;
  std::vector<Channel> channels;
  int chosen;
  int profile = -1;  // as told to the caller
  int replaced = -1;
  bool same_device = false;  // the channel keeps what it has stored
};

std::ostream &operator<<(std::ostream &out, const Choice &choice) { return out << choice.rule; }

std::string ruleOf(const testing::TestParamInfo<Choice> &info) { return info.param.rule; }

class ChoiceTest : public HotplugTest, public testing::WithParamInterface<Choice> {
 protected:
  ChoiceTest() {
    for (const Channel &one : GetParam().channels) {
      known(one.number, one.exists, one.profile, one.slot, one.name).anode(5);
    }
  }
};

class APluggedCamera : public ChoiceTest {};

TEST_P(APluggedCamera, GetsTheChannelThat) {
  const Choice &choice = GetParam();
  EXPECT_EQ(plug(), choice.chosen);
  EXPECT_EQ(profile, choice.profile);
  EXPECT_EQ(vnode, 77);
  EXPECT_EQ(devname, "(untouched)");
  for (int i = 0; i < 10; ++i) {
    if (i == choice.chosen) {
      EXPECT_THAT(writesTo(i), Contains("exists=1"));
      EXPECT_EQ(testing::Matches(Contains("profile=-1"))(writesTo(i)), !choice.same_device);
    } else if (i == choice.replaced) {
      EXPECT_THAT(writesTo(i), testing::UnorderedElementsAre("exists=-1", "audio/anode=-1"));
    } else {
      EXPECT_THAT(writesTo(i), IsEmpty()) << i;
    }
  }
}

std::vector<Channel> tenOccupied(int exists, int profile) {
  std::vector<Channel> all;
  for (int i = 0; i < 10; ++i) all.push_back({i, exists, profile, "2-1", kName});
  return all;
}

std::vector<Channel> tenOccupiedOneInThePort() {
  std::vector<Channel> all = tenOccupied(1, -1);
  all[3] = {3, 1, 1, kSlot, "Old"};
  return all;
}

INSTANTIATE_TEST_SUITE_P(
    Rule, APluggedCamera,
    Values(Choice{"IsFirstWhenNothingIsStored", {}, 0},  //
           Choice{"WasUsedByAnotherPortAndIsFree", {{0, 0, -1, "2-1", "Old"}}, 0},
           Choice{"WasDisplacedAndIsFree", {{0, -1, -1, "2-1", "Old"}}, 0},
           Choice{"HasAnyOtherMarkThanAttachedAndIsFree", {{0, 2, -1, "2-1", "Old"}}, 0},
           Choice{"FollowsAnAttachedOne", {{0, 1, -1, "2-1", "Old"}}, 1},
           Choice{"FollowsADetachedOneWithAProfile", {{0, 0, 2, "2-1", "Old"}}, 1},
           Choice{"HasNoPortYetWhateverItsProfile", {{0, 0, 2, "", ""}}, 0, 2},
           Choice{"KnowsThePortRatherThanAFreeOne", {{5, 0, -1, kSlot, "Old"}}, 5},
           Choice{"KnowsThePortThoughItsCameraWasAnother", {{5, 1, -1, kSlot, "Old"}}, 5},
           Choice{"KnowsThePortLastOfTwoWithoutProfile", {{3, 0, -1, kSlot, kName}, {5, 0, -1, kSlot, kName}}, 5},
           Choice{"HoldsThisVeryCamera", {{3, 1, 1, kSlot, kName}}, 3, 1, -1, true},
           Choice{"HeldThisVeryCamera", {{3, 0, 0, kSlot, kName}}, 3, 0, -1, true},
           Choice{"HeldThisVeryCameraThatWasDisplaced", {{3, -1, 3, kSlot, kName}}, 3, 3, -1, true},
           Choice{"HoldsThisVeryCameraBeforeALaterOneOfThePort",
                  {{3, 1, 1, kSlot, kName}, {4, 0, -1, kSlot, kName}},
                  3,
                  1,
                  -1,
                  true},
           Choice{"HoldsThisVeryCameraAfterAnEarlierOneOfThePort",
                  {{3, 0, -1, kSlot, kName}, {4, 1, 2, kSlot, kName}},
                  4,
                  2,
                  -1,
                  true},
           Choice{"IsFreeBesideADetachedOneOfAnotherName", {{0, 0, 1, kSlot, "Old"}}, 1},
           Choice{"IsFreeBeforeOneThatIsReplaced", {{3, 1, 1, kSlot, "Old"}}, 0, -1, 3},
           Choice{"HasNoPortYetBeforeOneThatIsReplacedWithoutItsProfile",
                  {{0, 0, 2, "", ""}, {3, 1, 1, kSlot, "Old"}},
                  0,
                  -1,
                  3},
           Choice{"FollowsAnAttachedOneInAPortOfOneCharacter", {{0, 1, -1, "7", "Old"}}, 1},
           Choice{"IsFreeBehindOneThatIsReplaced", {{0, 1, 1, kSlot, "Old"}}, 1, -1, 0},
           Choice{"KnowsThePortBeforeOneThatIsReplaced", {{2, 0, -1, kSlot, "Old"}, {3, 1, 1, kSlot, "Old"}}, 2, -1, 3},
           Choice{"IsFreeBehindAReplacedOneAndAnotherOfThePort",
                  {{0, 1, 1, kSlot, "Old"}, {1, 0, -1, kSlot, kName}},
                  2,
                  -1,
                  0},
           Choice{"IsFreeBehindAReplacedOneAndOneThatHeldThisCamera",
                  {{0, 1, 1, kSlot, "Old"}, {1, 1, 2, kSlot, kName}},
                  2,
                  -1,
                  0},
           Choice{"HasExactlyThatPort", {{5, 0, -1, "1-1.1", kName}, {6, 0, -1, "1-", kName}}, 0},
           Choice{"NobodyWhenAllAreAttached", tenOccupied(1, -1), -1},
           Choice{"NobodyWhenAllHaveAProfile", tenOccupied(0, 1), -1},
           Choice{"NobodyNotEvenAReplacedOneWhenAllAreOccupied", tenOccupiedOneInThePort(), -1}),
    ruleOf);

class APulledCamera : public ChoiceTest {};

TEST_P(APulledCamera, LeavesTheChannelThat) {
  const Choice &choice = GetParam();
  EXPECT_EQ(pullOut(), choice.chosen);
  EXPECT_EQ(profile, choice.profile);
  EXPECT_EQ(vnode, choice.chosen == -1 ? 77 : 20 + choice.chosen);
  if (choice.chosen == -1) {
    EXPECT_THAT(host.config.writes(), IsEmpty());
    EXPECT_THAT(host.network.datagrams(), IsEmpty());
  } else {
    EXPECT_EQ(host.channel(choice.chosen).get("exists"), "0");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rule, APulledCamera,
    Values(Choice{"IsAttachedInThePort", {{4, 1, 2, kSlot, kName}}, 4, 2},
           Choice{"IsAttachedInThePortUnderAnyName", {{4, 1, -1, kSlot, "Old"}}, 4, -1},
           Choice{"IsTheFirstOfTwo", {{4, 1, 2, kSlot, kName}, {5, 1, 3, kSlot, kName}}, 4, 2},
           Choice{"IsTheLastOfTheTen", {{9, 1, 2, kSlot, kName}}, 9, 2},
           Choice{"IsAttachedBehindADetachedOne", {{4, 0, 2, kSlot, kName}, {5, 1, 3, kSlot, kName}}, 5, 3},
           Choice{"NobodyWhenNothingIsStored", {}, -1},
           Choice{"NobodyWhenOtherPortsAreAttached", tenOccupied(1, 1), -1},
           Choice{"NobodyWhenThePortIsDetached", {{9, 0, 2, kSlot, kName}}, -1},
           Choice{"NobodyWhenThePortsCameraWasDisplaced", {{4, -1, 2, kSlot, kName}}, -1},
           Choice{"NobodyWhenThePortHasAnotherMark", {{4, 2, 2, kSlot, kName}}, -1}),
    ruleOf);

class ASoundCard : public HotplugTest {
 protected:
  ASoundCard() { isCard("USB Audio"); }
};

TEST_F(ASoundCard, GetsTheAttachedChannelOfItsPortWhateverItsName) {
  known(3, 1, 1);
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(profile, 1);
  EXPECT_STREQ(device.devname, "USB Audio");
}

TEST_F(ASoundCard, TakesTheNameOfAnAttachedChannelWithoutProfile) {
  known(3, 1, -1);
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(profile, -1);
  EXPECT_STREQ(device.devname, kName);
}

TEST_F(ASoundCard, TakesTheNameOfADisplacedChannelToo) {
  known(3, -1, -1);
  plug();
  EXPECT_STREQ(device.devname, kName);
}

TEST_F(ASoundCard, KeepsItsNameOnADetachedChannel) {
  known(3, 0, -1);
  EXPECT_EQ(plug(), 3);
  EXPECT_STREQ(device.devname, "USB Audio");
}

TEST_F(ASoundCard, GetsADetachedChannelWithAProfileByItsNameOnly) {
  known(3, 0, 1);
  EXPECT_EQ(plug(), 0);
  known(3, 0, 1, kSlot, "USB Audio");
  EXPECT_EQ(plug(), 3);
}

TEST_F(ASoundCard, IsKnownByTheNameThatItHasJustTaken) {
  known(3, 1, -1);
  known(5, 0, 1);
  EXPECT_EQ(plug(), 5);
  EXPECT_EQ(profile, 1);
  EXPECT_STREQ(device.devname, kName);
}

TEST_F(ASoundCard, IsNoLongerKnownByTheNameThatItHad) {
  known(3, 1, -1);
  known(5, 0, 1, kSlot, "USB Audio");
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(profile, -1);
}

TEST_F(ASoundCard, ReplacesNoCamera) {
  known(3, 1, 1);
  plug();
  EXPECT_THAT(host.config.writes(), Not(Contains("ch3/exists=-1")));
}

}  // namespace
}  // namespace contract
