// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A profile is assigned to a camera, asked about and renamed.
#include <string>

#include "assignment_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;
using testing::StartsWith;

// --- assignment ---

TEST_F(AProfile, IsAssignedWithItsTimeTagAndLink) {
  host.commands.allowInsideCriticalSection();  // the link command
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("profile"), "2");
  EXPECT_EQ(host.channel(3).get("vtag"), "00004711");
  EXPECT_EQ(host.channel(3).get("hlspath"), kHash);
  EXPECT_THAT(host.channel(3).get("createtime"), MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}"));
}

TEST_F(AProfile, IsWrittenInOrderWithTheLocalTimeInTwoDigits) {
  host.commands.allowInsideCriticalSection();
  host.clock.stopAt("2024-03-05 07:08:09");
  assign("3-1.2", 2);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/profile=2", "ch3/createtime=2024-03-05 07:08:09",
                                                "ch3/vtag=00004711", std::string("ch3/hlspath=") + kHash));
}

TEST_F(AProfile, HasTheTimeOfItsHostsTimeZone) {
  host.commands.allowInsideCriticalSection();
  host.clock.stopAt("2024-03-05 03:00:00", "XXX-5:30");
  assign("3-1.2", 2);
  EXPECT_EQ(host.channel(3).get("createtime"), "2024-03-05 08:30:00");
}

TEST_F(AProfile, IsLinkedToTheDirectoryOfItsNumberPlusOne) {
  host.commands.allowInsideCriticalSection();
  assign("3-1.2", 2);
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(linking(3, kHash)));
}

TEST_F(AProfile, OfNumberZeroOnChannelZeroIsOneLikeAnyOther) {
  host.commands.allowInsideCriticalSection();
  camera(0, "1-1", 0);
  EXPECT_EQ(assign("1-1", 0), 0);
  EXPECT_EQ(host.channel(0).get("profile"), "0");
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(linking(1, kHash)));
}

TEST_F(AProfile, IsMissingWhereMinusOneIsStoredAndNowhereElse) {
  int unassigned = 7;
  host.channel(3).profile(-2);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, &unassigned), -1);
  EXPECT_EQ(unassigned, 7);
}

TEST_F(AProfile, IsLoggedAfterTheFileIsWrittenAndNotNotified) {
  host.commands.allowInsideCriticalSection();
  assign("3-1.2", 2);
  EXPECT_EQ(host.journal.lines().back(), "log 0 Modified Channel 3 USB device name: HD Webcam (3-1.2)");
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AProfile, WhoseLinkNameCouldNotBeMadeGetsNoLink) {
  host.commands.cannotStart(kUuidCommand);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("hlspath"), "");
  EXPECT_THAT(host.journal.only({"exec"}), IsEmpty());
}

TEST_F(AProfile, HasALinkNameOf32CharactersAtMost) {
  host.commands.allowInsideCriticalSection();
  host.commands.prints(kUuidCommand, std::string(33, 'a') + "\n");
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("hlspath"), std::string(32, 'a'));
}

TEST_F(AProfile, WhoseLinkCannotBeMadeIsAssignedNevertheless) {
  host.commands.allowInsideCriticalSection();
  host.commands.programsReturn(1);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("hlspath"), kHash);
  EXPECT_THAT(host.journal.only({"log"}), SizeIs(1));
}

TEST_F(AProfile, OfTheSameDeviceIsNotChanged) {
  host.channel(3).profile(2);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.commands(), IsEmpty());
  EXPECT_THAT(host.journal.only({"log"}), IsEmpty());
}

TEST_F(AProfile, HeldByAnotherAttachedDeviceIsRefused) {
  camera(0, "1-1", 0).profile(2);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, OfTheLastChannelIsOneLikeAnyOther) {
  host.commands.allowInsideCriticalSection();
  camera(9, "1-1", 0);
  EXPECT_EQ(assign("1-1", 2), 0);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_EQ(host.channel(9).get("profile"), "2");
  EXPECT_EQ(host.channel(3).get("profile"), "(none)");
}

TEST_F(AProfile, OfAnUnpluggedDeviceIsFree) {
  host.commands.allowInsideCriticalSection();
  camera(0, "1-1", 0).profile(2).exists(0);
  EXPECT_EQ(assign("3-1.2", 2), 0);
}

TEST_F(AProfile, HeldTwiceIsThatOfTheFirstHolder) {
  host.channel(3).profile(2);
  camera(5, "1-1", 1).profile(2);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(assign("1-1", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, ForADeviceInTwoChannelsIsAssignedToTheFirstAttachedOne) {
  host.commands.allowInsideCriticalSection();
  camera(1, "3-1.2", 1).exists(0);
  camera(5, "3-1.2", 6).profile(1);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("profile"), "2");
}

TEST_F(AProfile, ForADeviceWhoseFirstChannelHasAnotherIsRefused) {
  camera(1, "3-1.2", 1).profile(1);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, ForADeviceThatHasAnotherIsRefused) {
  host.channel(3).profile(1);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, ForAnUnknownPortIsRefusedBeforeAnyCommand) {
  EXPECT_EQ(assign("9-9", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AProfile, OutsideZeroToThreeIsRefusedWithoutAnOpen) {
  int unassigned = 7;
  for (const int profile : {-1, 4}) {
    EXPECT_EQ(assign("3-1.2", profile), -1);
    EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", profile, &unassigned), -1);
    EXPECT_EQ(vl_clear_usbchn_profile(profile, nullptr, 4), -1);
    EXPECT_EQ(vl_set_profile_channelname(profile, "name", 4), -1);
  }
  EXPECT_EQ(unassigned, 7);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AProfile, MakesEveryAttachedCameraThatConflictsWait) {
  host.commands.allowInsideCriticalSection();
  camera(0, "3-1.1", 1).profile(0);
  camera(1, "3-2", 2);
  camera(2, "3-1.4", -1);
  camera(7, "3-1.3", 7).conflict(5);
  camera(8, "3-1", 8).exists(0);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(mark(0), "3");
  EXPECT_EQ(mark(1), "(none)");
  EXPECT_EQ(mark(2), "(none)") << "a channel without a video node is never marked";
  EXPECT_EQ(mark(7), "3") << "its own mark is read and not used";
  EXPECT_EQ(mark(8), "(none)");
}

TEST_F(AProfile, MakesACameraOnTheSameBridgeWait) {
  host.commands.allowInsideCriticalSection();
  host.camera(5, "3-1.2").behindBridge("/devices/pci0000:00/0000:00:1c.0/0000:03:00.0");
  camera(0, "4-1", 1);
  host.camera(1, "4-1").behindBridge("/devices/pci0000:00/0000:00:1c.0/0000:03:00.0");
  camera(1, "5-1", 2);
  host.camera(2, "5-1").behindBridge("/devices/pci0000:00/0000:00:1d.0/0000:04:00.0");
  assign("3-1.2", 2);
  EXPECT_EQ(mark(0), "3");
  EXPECT_EQ(mark(1), "(none)");
}

TEST_F(AProfile, OnAOneChannelHostMakesEveryOtherCameraWait) {
  host.commands.allowInsideCriticalSection();
  host.limitToOneChannel();
  camera(0, "1-1", 0);
  camera(9, "2-1", 9).conflict(0);
  assign("3-1.2", 2);
  EXPECT_EQ(mark(0), "3");
  EXPECT_EQ(mark(9), "3");
}

TEST_F(AProfile, OfASoundCardMakesTheCamerasOnItsRootPortWait) {
  host.commands.allowInsideCriticalSection();
  host.channel(3).vnode(-1).anode(1);
  camera(0, "3-1.1", 1);
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(mark(0), "3");
}

TEST_F(AProfile, IsReadInOnePassAndWrittenAndLinkedInAnother) {
  host.commands.allowInsideCriticalSection();
  assign("3-1.2", 2);
  EXPECT_THAT(host.journal.only({"open", "close", "exec", "log"}),
              ElementsAre("open r", "close", "open w", StartsWith("exec /bin/ln"), "close", StartsWith("log 0")));
}

TEST_F(AProfile, IsWrittenAsItWasReadWhateverAnotherWriterDoesBetween) {
  host.commands.allowInsideCriticalSection();
  host.config.beforeOpenNumber(2, [this] { host.channel(3).profile(1); });
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("profile"), "2");
}

TEST_F(AProfile, DoesNotChangeTheCallersText) {
  host.commands.allowInsideCriticalSection();
  camera(0, "3-1.1", 1);
  char slot[] = "3-1.2";
  vl_set_usbchn_profile(slot, 2);
  EXPECT_STREQ(slot, "3-1.2");
}

TEST_F(AProfile, IsNeitherAssignedNorAllowedWhenTheFileCannotBeRead) {
  host.config.failReadOpens(-5);
  OutputCapture output;
  int unassigned = 7;
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, &unassigned), -1);
  EXPECT_EQ(output.text(), openFailure(-5) + openFailure(-5));
  EXPECT_EQ(unassigned, 7);
  EXPECT_THAT(host.journal.only({"open"}), ElementsAre("open r failed", "open r failed"));
}

TEST_F(AProfile, IsNotLoggedWhenTheSecondOpenFails) {
  host.config.failWriteOpens(-5);
  OutputCapture output;
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_EQ(output.text(), openFailure(-5));
  EXPECT_THAT(host.journal.only({"log", "exec"}), IsEmpty());
}

// --- asking ---

TEST_F(AProfile, MayGoToADeviceWithoutOne) {
  int unassigned = 7;
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, &unassigned), 0);
  EXPECT_EQ(unassigned, 1);
}

TEST_F(AProfile, MayStayWhereItIs) {
  host.channel(3).profile(2);
  int unassigned = 7;
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, &unassigned), 0);
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 1, &unassigned), -1);
  EXPECT_EQ(unassigned, 7);
}

TEST_F(AProfile, ForADeviceInNoChannelIsAllowedAndNothingIsPrinted) {
  int unassigned = 7;
  EXPECT_EQ(vl_chk_usbdev_profile("9-9", 2, &unassigned), 0);
  EXPECT_EQ(unassigned, 7);
}

TEST_F(AProfile, IsAskedAboutAtTheFirstAttachedChannelOfTheDevice) {
  camera(1, "3-1.2", 1).exists(0).profile(0);
  camera(5, "3-1.2", 6).profile(1);
  int unassigned = 7;
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, &unassigned), 0);
  EXPECT_EQ(unassigned, 1);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

// --- renaming ---

TEST_F(AProfile, IsRenamedAndLogged) {
  host.channel(3).profile(2).profileName("old");
  EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 0), 0);
  EXPECT_EQ(host.channel(3).get("profilename"), "Front door");
  EXPECT_EQ(host.journal.lines().back(), "log 0 Modified Channel 3 channel name: Front door");
}

TEST_F(AProfile, IsRenamedInThreePassesAndLoggedOnce) {
  host.channel(3).profile(2).profileName("old");
  vl_set_profile_channelname(2, "", 5);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "open r", "close", "open w", "close",
                                                "log 0 Modified Channel 3 channel name: "));
}

TEST_F(AProfile, OfNoChannelIsNotRenamed) {
  EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 5), -1);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AProfile, IsNotRenamedWhenTheFileCannotBeOpened) {
  host.channel(3).profile(2);
  for (const int open : {1, 2, 3}) {
    host.config.failOpenNumber(open, -5);
    OutputCapture output;
    EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 5), -1);
    EXPECT_EQ(output.text(), openFailure(-5));
  }
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.only({"log"}), IsEmpty());
}

TEST_F(AProfile, RenamedToItsOwnNameIsLoggedForEventCodeFiveOnly) {
  host.channel(3).profile(2).profileName("Front door");
  EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 4), 0);
  EXPECT_THAT(host.journal.only({"log"}), IsEmpty());
  EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 5), 0);
  EXPECT_THAT(host.journal.only({"log"}), ElementsAre("log 0 Modified Channel 3 channel name: Front door"));
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, NameIsCutAt255BytesBeforeItIsComparedStoredAndLogged) {
  const std::string kept(255, 'n');
  host.channel(3).profile(2);
  vl_set_profile_channelname(2, (kept + "x").c_str(), 0);
  EXPECT_EQ(host.channel(3).get("profilename"), kept);
  EXPECT_EQ(host.journal.lines().back(), "log 0 Modified Channel 3 channel name: " + kept);
  host.journal.clear();
  vl_set_profile_channelname(2, (kept + "y").c_str(), 0);
  EXPECT_THAT(host.journal.only({"log"}), IsEmpty());
}

TEST_F(AProfile, WithoutItsArgumentsIsRefusedUntouched) {
  int unassigned = 7;
  EXPECT_EQ(vl_set_usbchn_profile(nullptr, 2), -1);
  EXPECT_EQ(vl_chk_usbdev_profile(nullptr, 2, &unassigned), -1);
  EXPECT_EQ(vl_chk_usbdev_profile("3-1.2", 2, nullptr), -1);
  EXPECT_EQ(vl_set_profile_channelname(2, nullptr, 5), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
