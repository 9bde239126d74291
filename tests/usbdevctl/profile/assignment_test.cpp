// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/assignment.h"

#include <gmock/gmock.h>

#include "json_of.h"
#include "some_cameras.h"

namespace {

using testing::HasSubstr;
using usbdevctl::adviceText;
using usbdevctl::Assignment;
using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Collision;
using usbdevctl::Collisions;
using usbdevctl::isHarmless;
using usbdevctl::isPossible;
using usbdevctl::judgeAssignment;
using usbdevctl::refusalText;
using usbdevctl::Verdict;

// Two cameras on one root port: the one of channel 0 streams profile 0, the one of channel 1 has none.
class JudgingAnAssignment : public testing::Test {
 protected:
  void SetUp() override {
    plug(0, "3-1.1").profile = 0;
    plug(1, "3-1.2");
    collisions_[0] = Collision::root_port;
  }

  ChannelRow &plug(std::size_t channel, const char *port) { return rows_[channel] = attachedRow(port); }

  Assignment judge(int profile = 1) const { return judgeAssignment(rows_, 1, profile, collisions_); }
  std::string refusal() const { return refusalText(judge(), rows_); }
  std::string advice() const { return adviceText(judge(), rows_); }

  ChannelRows rows_;
  Collisions collisions_ = {};
};

TEST_F(JudgingAnAssignment, OfACameraThatCollidesWithNoneIsHarmless) {
  collisions_ = {};
  EXPECT_EQ(judge().verdict, Verdict::free);
  EXPECT_TRUE(isHarmless(judge()));
  EXPECT_EQ(refusal(), "");
  EXPECT_EQ(advice(), "");
}

TEST_F(JudgingAnAssignment, OfACameraThatWaitsIsRefusedWithTheOneThatItWaitsFor) {
  rows_[1].parked_behind = 0;
  EXPECT_EQ(judge().verdict, Verdict::waits);
  EXPECT_FALSE(isHarmless(judge()));
  EXPECT_TRUE(isPossible(judge()));
  EXPECT_EQ(refusal(),
            "channel 1  3-1.2  \"Cam\"  no profile: it waits for channel 0  3-1.1  \"Cam\"  profile 0 (both are on "
            "root port 3-1); with a profile, both would wait for each other");
  EXPECT_EQ(advice(),
            "plug it into a port of another root port, or take the profile of channel 0 ('usbdevctl clear pf0') or "
            "switch its port off ('usbdevctl slot off 3-1.1'); --anyway assigns it nevertheless");
}

TEST_F(JudgingAnAssignment, ThatWouldStopACameraThatStreamsIsRefused) {
  EXPECT_EQ(judge().verdict, Verdict::stops_another);
  EXPECT_THAT(refusal(), HasSubstr("it would stop channel 0  3-1.1  \"Cam\"  profile 0 (both are on root port 3-1)"));
}

TEST_F(JudgingAnAssignment, IsNotRefusedForACameraThatDoesNotStream) {
  for (const auto &stop :
       {+[](ChannelRow &row) { row.profile.reset(); }, +[](ChannelRow &row) { row.parked_behind = 5; },
        +[](ChannelRow &row) { row.slot_switch = false; }, +[](ChannelRow &row) { row.supported = false; },
        +[](ChannelRow &row) { row.state = ChannelState::unplugged; }}) {
    SetUp();
    stop(rows_[0]);
    EXPECT_EQ(judge().verdict, Verdict::free);
    rows_[0] = {};
  }
}

TEST_F(JudgingAnAssignment, OfACameraThatNeedNotWaitAnyMoreAdvisesASynchronisation) {
  rows_[1].parked_behind = 0;
  rows_[0].slot_switch = false;
  EXPECT_EQ(judge().verdict, Verdict::waits);
  EXPECT_EQ(advice(), "'usbdevctl sync' finds out again which camera waits");
}

TEST_F(JudgingAnAssignment, OnAHostOfOneChannelAdvisesNoOtherPort) {
  rows_[1].parked_behind = 0;
  collisions_[0] = Collision::host;
  EXPECT_THAT(refusal(), HasSubstr("(this host is limited to one channel)"));
  EXPECT_THAT(advice(), testing::StartsWith("take the profile of channel 0"));
}

TEST_F(JudgingAnAssignment, OnOneControllerAdvisesAnotherController) {
  rows_[1].parked_behind = 0;
  collisions_[0] = Collision::controller;
  EXPECT_THAT(refusal(), HasSubstr("(both are on one USB controller behind a PCI bridge)"));
  EXPECT_THAT(advice(), testing::StartsWith("plug it into a port of another USB controller, or"));
}

TEST_F(JudgingAnAssignment, OfAnUnsupportedCameraIsRefused) {
  rows_[1].supported = false;
  EXPECT_EQ(judge().verdict, Verdict::unsupported);
  EXPECT_TRUE(isPossible(judge()));
  EXPECT_THAT(refusal(), HasSubstr("it is not supported; the profile would be used up and show nothing"));
  EXPECT_THAT(advice(), HasSubstr("'usbdevctl explain ch1'"));
}

TEST_F(JudgingAnAssignment, OfACameraWhosePortIsOffIsHarmless) {
  collisions_ = {};
  rows_[1].slot_switch = false;
  EXPECT_EQ(judge().verdict, Verdict::free);
}

TEST_F(JudgingAnAssignment, ThatIsMadeAlreadyIsNoHarm) {
  rows_[1].profile = 1;
  rows_[1].parked_behind = 0;
  EXPECT_EQ(judge().verdict, Verdict::bound);
  EXPECT_TRUE(isHarmless(judge()));
}

TEST_F(JudgingAnAssignment, OfAProfileThatAnotherChannelHasIsImpossible) {
  EXPECT_EQ(judge(0).verdict, Verdict::profile_taken);
  EXPECT_EQ(judge(0).other, 0);
  EXPECT_FALSE(isPossible(judge(0)));
}

TEST_F(JudgingAnAssignment, ToACameraWithAnotherProfileIsImpossible) {
  rows_[1].profile = 3;
  EXPECT_EQ(judge().verdict, Verdict::camera_taken);
  EXPECT_FALSE(isPossible(judge()));
  EXPECT_EQ(advice(), "'usbdevctl clear pf3' takes that one away");
}

TEST_F(JudgingAnAssignment, ToACameraThatIsNotAttachedIsImpossible) {
  for (const ChannelState state : {ChannelState::unplugged, ChannelState::displaced}) {
    rows_[1].state = state;
    EXPECT_EQ(judge().verdict, Verdict::away);
    EXPECT_FALSE(isPossible(judge()));
  }
}

// The library would give the profile to the channel of the displaced camera.
TEST_F(JudgingAnAssignment, ToAPortThatAnEarlierDisplacedCameraKeepsIsImpossible) {
  rows_[0].state = ChannelState::displaced;
  rows_[0].slot = "3-1.2";
  EXPECT_EQ(judge().verdict, Verdict::port_kept);
  EXPECT_EQ(judge(0).verdict, Verdict::port_kept);
  EXPECT_FALSE(isPossible(judge()));
  EXPECT_EQ(advice(), "'usbdevctl forget ch0' frees the channel that keeps the port, its profile with it");
}

TEST_F(JudgingAnAssignment, ToAPortThatAnUnpluggedCameraKeepsIsHarmless) {
  rows_[0].state = ChannelState::unplugged;
  rows_[0].slot = "3-1.2";
  EXPECT_EQ(judge().verdict, Verdict::free);
}

TEST_F(JudgingAnAssignment, ShowsProgramsWhyItIsRefused) {
  rows_[1].parked_behind = 0;
  const std::string json = jsonOf(assignmentMembers(judge(), rows_));
  EXPECT_THAT(json,
              HasSubstr("\"reason\":\"waits\",\"other_channel\":0,\"collision\":\"root_port\",\"why\":\"channel 1"));
  rows_[1].parked_behind.reset();
  collisions_ = {};
  EXPECT_THAT(jsonOf(assignmentMembers(judge(), rows_)),
              HasSubstr("\"reason\":null,\"other_channel\":null,\"collision\":null,\"why\":null,\"advice\":null"));
}

}  // namespace
