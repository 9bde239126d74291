// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "settings/steps.h"

#include <gmock/gmock.h>

#include "some_cameras.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usbdevctl::CameraFacts;
using usbdevctl::CameraSettings;
using usbdevctl::ChannelRow;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Collision;
using usbdevctl::Plan;
using usbdevctl::planImport;
using usbdevctl::planMove;
using usbdevctl::planReturn;
using usbdevctl::ProfileSettings;
using usbdevctl::Refusals;
using usbdevctl::Settings;
using usbdevctl::Step;

using Kind = Step::Kind;

MATCHER_P(Says, words, "") { return arg.why.find(words) != std::string::npos; }
MATCHER_P2(Names, reason, other, "") { return arg.reason == reason && arg.other == other; }

std::vector<Kind> kindsOf(const Plan &plan) {
  std::vector<Kind> kinds;
  for (const Step &step : plan.steps) kinds.push_back(step.kind);
  return kinds;
}

// Two attached cameras, of which channel 0's has profile 1; both offer MJPEG of 640x480 at 30.
class APlan : public testing::Test {
 protected:
  APlan() {
    plug(0, "3-1").profile = 1;
    plug(1, "5-1");
    profile_.profile = 1;
    profile_.name = "Door";
    profile_.stream = stream();
    profile_.share = {true, "pass"};
    settings_ = {CameraSettings{"3-1", "Cam", true, profile_}, CameraSettings{"5-1", "Cam", true, std::nullopt}};
  }

  ChannelRow &plug(std::size_t channel, const char *port) { return rows_[channel] = attachedRow(port); }

  static usbdevctl::StreamChange stream(float rate = 30) {
    _streaminfo record = {};
    record.stream_type = 2;
    record.vcodec = 1;
    record.width = 640;
    record.height = 480;
    record.framerate = rate;
    return usbdevctl::allSettings(record);
  }

  CameraFacts facts(int channel) const {
    CameraFacts facts;
    facts.camera = {channel, rows_[static_cast<std::size_t>(channel)]};
    facts.formats.count = 1;
    _usbfmt_des &format = facts.formats.formats[0];
    format.codec = 1;
    format.res_count = 1;
    format.res[0] = {640, 480, 1, {30}};
    if (facts.camera.row.profile) facts.current = profile_;
    return facts;
  }

  Plan import() const { return planImport(settings_, rows_, {facts(0), facts(1)}); }
  Plan move(const CameraFacts &target) const { return planMove(profile_, {0, rows_[0]}, target, rows_); }

  ChannelRows rows_;
  ProfileSettings profile_;
  Settings settings_;
};

using AnImport = APlan;
using AMove = APlan;

TEST_F(AnImport, OfTheSettingsThatThereAreChangesNothing) {
  EXPECT_THAT(kindsOf(import()), IsEmpty());
  EXPECT_THAT(import().refusals, IsEmpty());
}

TEST_F(AnImport, ChangesWhatDiffersOnly) {
  settings_[0].profile->name = "Gate";
  EXPECT_THAT(kindsOf(import()), ElementsAre(Kind::rename));
  settings_[0].profile->share.password = "other";
  EXPECT_THAT(kindsOf(import()), ElementsAre(Kind::rename, Kind::share));
}

TEST_F(AnImport, AssignsAProfileThatIsFreeAndAppliesAllSettings) {
  rows_[0].profile.reset();
  EXPECT_THAT(kindsOf(import()), ElementsAre(Kind::bind, Kind::rename, Kind::stream, Kind::share));
}

TEST_F(AnImport, SwitchesAPortOnFirstAndOffLast) {
  rows_[0].profile.reset();
  rows_[0].slot_switch = false;
  EXPECT_THAT(kindsOf(import()), ElementsAre(Kind::port_on, Kind::bind, Kind::rename, Kind::stream, Kind::share));
  rows_[0].slot_switch = true;
  settings_[0].port_on = false;
  EXPECT_THAT(kindsOf(import()), ElementsAre(Kind::bind, Kind::rename, Kind::stream, Kind::share, Kind::port_off));
}

TEST_F(AnImport, IsRefusedWhereACameraIsMissing) {
  settings_[1].device = "Other";
  EXPECT_THAT(import().refusals, ElementsAre(Says("no camera \"Other\" is attached to port 5-1")));
}

TEST_F(AnImport, IsRefusedIfAProfileBelongsToAnotherCamera) {
  std::swap(settings_[0].profile, settings_[1].profile);
  EXPECT_THAT(import().refusals, ElementsAre(Says("it has profile 1, and the settings have none for it"),
                                             Says("profile 1 belongs to another camera: channel 0")));
}

TEST_F(AnImport, IsRefusedWhereOneOfItsCamerasWouldStopAnother) {
  rows_[0].profile.reset();
  settings_[1].profile = profile_;
  settings_[1].profile->profile = 2;
  CameraFacts first = facts(0);
  CameraFacts second = facts(1);
  first.collisions[1] = second.collisions[0] = Collision::root_port;
  EXPECT_THAT(planImport(settings_, rows_, {first, second}).refusals, ElementsAre(Says("it waits for channel 0")));
}

TEST_F(AnImport, IsRefusedWhereTheCameraDoesNotOfferTheStream) {
  settings_[0].profile->stream = stream(60);
  EXPECT_THAT(import().refusals, ElementsAre(Says("it does not offer the stream: fps 30 instead of 60")));
}

TEST_F(AnImport, IsRefusedWhereAStreamWouldBeSetWhileThePortIsOff) {
  rows_[0].slot_switch = false;
  settings_[0].port_on = false;
  EXPECT_THAT(import().refusals, IsEmpty());
  settings_[0].profile->stream = stream(15);
  EXPECT_THAT(import().refusals, ElementsAre(Says("its stream cannot be set while its port is off")));
}

TEST_F(AMove, ClearsAssignsAndAppliesAllSettings) {
  EXPECT_THAT(kindsOf(move(facts(1))), ElementsAre(Kind::clear, Kind::bind, Kind::rename, Kind::stream, Kind::share));
  EXPECT_THAT(move(facts(1)).refusals, IsEmpty());
}

TEST_F(AMove, LeavesOutANameAndALinkThatThereAreNot) {
  profile_.name.clear();
  profile_.share = {};
  EXPECT_THAT(kindsOf(move(facts(1))), ElementsAre(Kind::clear, Kind::bind, Kind::stream));
}

TEST_F(AMove, ShowsWhatTheNewCameraDoesNotOffer) {
  profile_.stream = stream(60);
  const auto differences = move(facts(1)).differences;
  ASSERT_EQ(differences.size(), 1U);
  EXPECT_EQ(differenceText(differences.front()), "fps 30 instead of 60");
}

TEST_F(AMove, ToACameraThatWaitsForTheOldOneIsPossible) {
  rows_[1].parked_behind = 0;
  EXPECT_THAT(move(facts(1)).refusals, IsEmpty());
}

TEST_F(AMove, ToACameraThatWaitsForAThirdOneIsRefused) {
  plug(2, "5-2").profile = 3;
  rows_[1].parked_behind = 2;
  const Refusals refusals = move(facts(1)).refusals;
  EXPECT_THAT(refusals, ElementsAre(Says("it waits for channel 2")));
  EXPECT_THAT(refusals, ElementsAre(Names("waits", 2)));
}

TEST_F(AMove, ToACameraThatWouldWaitForTheOldOnesSuccessorIsRefused) {
  plug(2, "3-1.3").profile = 3;
  rows_[2].parked_behind = rows_[1].parked_behind = 0;
  std::swap(rows_[1], rows_[2]);
  CameraFacts target = facts(2);
  EXPECT_THAT(move(target).refusals, ElementsAre(Says("it waits for channel 1")));
}

TEST_F(AMove, ToACameraThatCannotStreamIsRefused) {
  rows_[1].slot_switch = false;
  EXPECT_THAT(move(facts(1)).refusals, ElementsAre(Names("port_off", -1)));
  rows_[1].slot_switch = true;
  CameraFacts target = facts(1);
  target.formats.count = 0;
  EXPECT_THAT(move(target).refusals, ElementsAre(Names("no_format", -1)));
}

TEST_F(AMove, OfADisplacedCamerasProfileToTheOneInItsPortFreesItsChannel) {
  rows_[0].state = ChannelState::displaced;
  rows_[1].slot = "3-1";
  EXPECT_THAT(kindsOf(move(facts(1))),
              ElementsAre(Kind::clear, Kind::forget, Kind::bind, Kind::rename, Kind::stream, Kind::share));
}

TEST_F(AMove, ThatFailsIsTakenBackStepByStep) {
  const Plan plan = move(facts(1));
  const auto back = [&](std::size_t done) {
    return planReturn(profile_, {0, rows_[0]}, {plan.steps.begin(), plan.steps.begin() + static_cast<long>(done)});
  };
  EXPECT_THAT(kindsOf(back(1)), ElementsAre(Kind::bind, Kind::rename, Kind::stream, Kind::share));
  EXPECT_THAT(kindsOf(back(3)), ElementsAre(Kind::clear, Kind::bind, Kind::rename, Kind::stream, Kind::share));
  rows_[0].state = ChannelState::unplugged;
  EXPECT_THAT(
      back(1).refusals,
      ElementsAre(Says("the camera that had it is away, and the library assigns profiles only to attached cameras")));
  EXPECT_THAT(back(1).refusals, ElementsAre(Names("not_put_back", -1)));
}

}  // namespace
