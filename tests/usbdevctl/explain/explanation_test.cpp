// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "explain/explanation.h"

#include <gmock/gmock.h>

#include "some_cameras.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using usbdevctl::Cause;
using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Collision;
using usbdevctl::Collisions;
using usbdevctl::Reason;
using usbdevctl::reasonFor;
using usbdevctl::Reasons;

// Channel 4's camera streams profile 2.
class AnExplanation : public testing::Test {
 protected:
  AnExplanation() { rows_[4] = attachedRow("3-1.1", 2); }

  ChannelRow &row() { return rows_[4]; }

  Reasons reasons() const { return explain(rows_, 4, collisions_, unsupported_, machine_); }

  std::vector<std::string> words() const {
    std::vector<std::string> words;
    for (const Reason &reason : reasons()) words.emplace_back(reason.word);
    return words;
  }

  ChannelRows rows_;
  Collisions collisions_ = {};
  std::optional<Reason> unsupported_;
  Reasons machine_;
};

TEST_F(AnExplanation, OfACameraThatStreamsHasNoReason) {
  EXPECT_THAT(words(), IsEmpty());
  EXPECT_THAT(explanationText({4, row()}, reasons()), HasSubstr("\n  nothing keeps it from streaming\n"));
  EXPECT_THAT(explanationJson({4, row()}, reasons()).line(), HasSubstr("\"streams\":true,\"reasons\":[]"));
}

TEST_F(AnExplanation, HasWhatTheMachineHasAgainstTheCamera) {
  row().profile.reset();
  machine_ = {reasonFor(Cause::twins), reasonFor(Cause::busy)};
  EXPECT_THAT(words(), ElementsAre("busy", "unbound", "twins"));
  machine_ = {reasonFor(Cause::gone)};
  EXPECT_THAT(words(), ElementsAre("gone")) << "a profile would not help";
}

TEST_F(AnExplanation, OfACameraThatStreamsMayHaveANotice) {
  machine_ = {reasonFor(Cause::twins, {{"other", "3-2"}})};
  EXPECT_THAT(explanationText({4, row()}, reasons()),
              HasSubstr("\n  nothing keeps it from streaming\n  the camera in port 3-2"));
  EXPECT_THAT(explanationJson({4, row()}, reasons()).line(),
              HasSubstr("\"streams\":true,\"reasons\":[{\"reason\":\"twins\""));
}

TEST_F(AnExplanation, NamesEverythingThatKeepsACameraFromStreaming) {
  row().profile.reset();
  row().slot_switch = false;
  row().parked_behind = 1;
  EXPECT_THAT(words(), ElementsAre("waits", "switched_off", "unbound"));
}

TEST_F(AnExplanation, OfWaitingNamesTheOtherCameraAndTheReason) {
  row().parked_behind = 1;
  rows_[1] = row();
  rows_[1].slot = "3-1.4";
  rows_[1].parked_behind.reset();
  collisions_[1] = Collision::root_port;
  EXPECT_THAT(reasons()[0].why, HasSubstr("channel 1  3-1.4"));
  EXPECT_THAT(reasons()[0].why, HasSubstr("(both are on root port 3-1)"));
  EXPECT_THAT(reasons()[0].remedy, HasSubstr("'usbdevctl slot off 3-1.4'"));
  EXPECT_THAT(explanationJson({4, row()}, reasons()).line(),
              HasSubstr("\"other_channel\":1,\"collision\":\"root_port\""));
}

TEST_F(AnExplanation, OfAnUnsupportedCameraAdvisesNoProfile) {
  row().supported = false;
  row().profile.reset();
  unsupported_ = Reason{"unsupported", "why", "remedy"};
  EXPECT_THAT(words(), ElementsAre("unsupported"));
}

TEST_F(AnExplanation, OfACameraThatIsAwayAdvisesNoProfile) {
  row().profile.reset();
  row().state = ChannelState::unplugged;
  EXPECT_THAT(words(), ElementsAre("unplugged"));
  EXPECT_EQ(reasons()[0].remedy, "plug it into port 3-1.1 again, or 'usbdevctl forget ch4' frees the channel");
}

TEST_F(AnExplanation, OfADisplacedCameraNamesTheOneInItsPort) {
  row().state = ChannelState::displaced;
  EXPECT_EQ(reasons()[0].why, "another camera was put into its port");
  rows_[5].state = ChannelState::plugged;
  rows_[5].slot = "3-1.1";
  EXPECT_THAT(reasons()[0].why, HasSubstr("another camera is in its port: channel 5"));
  EXPECT_THAT(reasons()[0].remedy, HasSubstr("'usbdevctl move 2 ch5' gives that one its profile"));
}

TEST_F(AnExplanation, OfACameraWithoutProfileOffersTheFirstFreeOne) {
  row().profile.reset();
  EXPECT_EQ(reasons()[0].remedy, "'usbdevctl assign ch4 0' assigns one");
  for (int profile = 0; profile < USBDEV_PROFILES; ++profile)
    rows_[static_cast<std::size_t>(profile)].profile = profile;
  EXPECT_EQ(reasons()[0].remedy, "every profile has a camera: 'usbdevctl move PROFILE ch4' moves one to it");
}

}  // namespace
