// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Who takes over when a channel that others wait for goes away.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Channel 2 is the holder; its device has been removed. Ports differ, so that no cameras conflict by chance.
class AHandOver : public ContractTest {
 protected:
  AHandOver() { host.channel(2).exists(0).profile(3).slot("1-1.1").vnode(-1).conflict(-1); }

  HostChannel waiting(int number, int its_profile, const std::string &since) {
    return host.channel(number)
        .attached("9-" + std::to_string(number), number)
        .streaming(its_profile)
        .conflict(2)
        .createTime(since);
  }

  int handOver(int mode = 0, int value = -1) {
    profile = 12345;
    OutputCapture output;
    const int result = updateConflict(2, value, mode, &profile);
    message = output.text();
    return result;
  }

  int profile = 0;
  std::string message;
};

TEST_F(AHandOver, ReleasesTheWaitingOneAndMakesTheHolderWaitForIt) {
  waiting(5, 1, "2024-03-05 08:15:00");
  EXPECT_EQ(handOver(), 0);
  EXPECT_EQ(profile, 1);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch5/conflictch=-1", "ch2/conflictch=5"));
}

TEST_F(AHandOver, WithoutAWaitingOneWritesNothing) {
  EXPECT_EQ(handOver(), 0);
  EXPECT_EQ(profile, 99);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AHandOver, OfAWaitingChannelDoesNothing) {
  waiting(5, 1, "2024-03-05 08:15:00");
  for (const int mark : {0, 4, 999}) {
    host.channel(2).conflict(mark);
    EXPECT_EQ(handOver(), 0);
    EXPECT_EQ(profile, 99);
  }
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AHandOver, IsToTheOldest) {
  waiting(4, 0, "2024-03-05 08:15:02");
  waiting(5, 1, "2024-03-05 08:15:01");
  waiting(6, 2, "2024-03-05 08:15:03");
  handOver();
  EXPECT_EQ(profile, 1);
  EXPECT_EQ(host.channel(2).get("conflictch"), "5");
}

TEST_F(AHandOver, IsToTheSmallerProfileOfEquallyOldOnes) {
  waiting(4, 3, "2024-03-05 08:15:00");
  waiting(5, 1, "2024-03-05 08:15:00");
  waiting(6, 2, "2024-03-05 08:15:00");
  handOver();
  EXPECT_EQ(profile, 1);
}

TEST_F(AHandOver, StaysWithTheFirstOfTwoThatAreAlikeInBoth) {
  waiting(4, 1, "2024-03-05 08:15:00");
  waiting(5, 1, "2024-03-05 08:15:00");
  handOver();
  EXPECT_EQ(host.channel(2).get("conflictch"), "4");
}

TEST_F(AHandOver, MayBeToTheFirstOrTheLastChannel) {
  for (const int channel : {0, 9}) {
    waiting(channel, 1, "2024-03-05 08:15:00");
    host.channel(2).conflict(-1);
    EXPECT_EQ(handOver(), 0);
    EXPECT_EQ(host.channel(2).get("conflictch"), std::to_string(channel));
  }
}

TEST_F(AHandOver, IsToTheFirstOneWhenNoneHasATimeBeforeNow) {
  waiting(4, 2, "9999-03-05 08:15:00");
  waiting(5, 1, "9998-03-05 08:15:00");
  handOver();
  EXPECT_EQ(profile, 2);
  waiting(4, 2, "");
  waiting(5, 1, "");
  host.channel(2).conflict(-1);
  handOver();
  EXPECT_EQ(profile, 2);
}

TEST_F(AHandOver, TakesNowInTheTimeZoneOfItsHost) {
  host.clock.stopAt("2024-03-05 03:00:00", "XXX-5:30");
  waiting(4, 2, "2024-03-05 08:00:00");
  waiting(5, 1, "2024-03-05 07:00:00");
  handOver();
  EXPECT_EQ(profile, 1);
}

TEST_F(AHandOver, IsToTheFirstOneWhenEveryTimeIsYetToCome) {
  host.clock.stopAt("2024-03-05 03:00:00", "XXX+5:30");
  waiting(4, 2, "2024-03-05 02:00:00");
  waiting(5, 1, "2024-03-05 01:00:00");
  handOver();
  EXPECT_EQ(profile, 2);
}

TEST_F(AHandOver, IsToALaterOneWhoseTimeIsKnown) {
  waiting(4, 0, "");
  waiting(5, 1, "2024-03-05 08:15:00");
  handOver();
  EXPECT_EQ(profile, 1);
}

TEST_F(AHandOver, IsNeverToADetachedOne) {
  waiting(5, 1, "2024-03-05 08:15:00").exists(0);
  handOver();
  EXPECT_EQ(profile, 99);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch5/conflictch=-1"));
}

TEST_F(AHandOver, IsNeverToOneWithoutAProfile) {
  waiting(5, -1, "2024-03-05 08:15:00");
  handOver();
  EXPECT_EQ(profile, 99);
}

TEST_F(AHandOver, IsNeverToASwitchedOffOneHoweverOld) {
  waiting(4, 0, "1999-03-05 08:15:00").slotSwitch(0);
  waiting(5, 1, "2024-03-05 08:15:00");
  handOver();
  EXPECT_EQ(profile, 1);
}

TEST_F(AHandOver, IsNeverToOneWhoseSwitchWasNotStored) {
  waiting(5, 1, "2024-03-05 08:15:00");
  host.config.erase("ch5/slot_switch");
  handOver();
  EXPECT_EQ(profile, 99);
}

TEST_F(AHandOver, IsNeverToOneThatWaitsForAnother) {
  waiting(5, 1, "2024-03-05 08:15:00").conflict(3);
  handOver();
  EXPECT_EQ(profile, 99);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AHandOver, WritesItsValueToEveryWaitingOne) {
  waiting(4, 0, "2024-03-05 08:15:00");
  waiting(5, -1, "");
  handOver(0, 7);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=7", "ch5/conflictch=7", "ch2/conflictch=4"));
}

TEST_F(AHandOver, MakesTheOthersOnTheNewHoldersRootPortWait) {
  waiting(4, 0, "2024-03-05 08:15:00").slot("1-1.4");
  waiting(5, 1, "2024-03-05 08:16:00").slot("1-1.5");
  host.channel(6).attached("1-1.6", 6);
  host.channel(7).attached("1-2", 7);
  handOver();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=-1", "ch5/conflictch=-1", "ch2/conflictch=4",
                                                "ch5/conflictch=4", "ch6/conflictch=4"));
}

TEST_F(AHandOver, MakesNoDetachedOneAndNoneWithoutANodeWait) {
  waiting(4, 0, "2024-03-05 08:15:00").slot("1-1.4");
  host.channel(5).exists(0).slot("1-1.5").vnode(5);
  host.channel(6).attached("1-1.6", -1);
  host.channel(7).exists(-1).slot("1-1.7").vnode(7);  // displaced, which is not detached
  handOver();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=-1", "ch2/conflictch=4", "ch7/conflictch=4"));
}

TEST_F(AHandOver, TestsTheOthersWithThePortOfTheFirstChoice) {
  waiting(4, 0, "2024-03-05 08:16:00").slot("1-1.4");
  waiting(5, 1, "2024-03-05 08:15:00").slot("1-2.5");
  host.channel(6).attached("1-1.6", 6);
  host.channel(7).attached("1-2.7", 7);
  handOver();
  EXPECT_EQ(profile, 1);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=-1", "ch5/conflictch=-1", "ch2/conflictch=5",
                                                "ch4/conflictch=5", "ch6/conflictch=5"));
}

TEST_F(AHandOver, MakesTheOthersOnTheNewHoldersBridgeWait) {
  waiting(4, 0, "2024-03-05 08:15:00").slot("3-4");
  host.channel(6).attached("4-6", 6);
  host.channel(7).attached("4-7", 7);
  host.camera(4, "3-4").behindBridge(kController);
  host.camera(6, "4-6").behindBridge(kController);
  handOver();
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=-1", "ch2/conflictch=4", "ch6/conflictch=4"));
}

TEST_F(AHandOver, KeepsTheBridgeOfAnEarlierChoice) {
  waiting(4, 0, "2024-03-05 08:16:00").slot("3-4");
  waiting(5, 1, "2024-03-05 08:15:00").slot("1-5");
  host.channel(6).attached("4-6", 6);
  host.camera(4, "3-4").behindBridge(kController);
  host.camera(6, "4-6").behindBridge(kController);
  handOver();
  EXPECT_EQ(profile, 1);
  EXPECT_EQ(host.channel(6).get("conflictch"), "5");
}

TEST_F(AHandOver, TakesTheBridgeOfALaterChoiceThatHasOne) {
  waiting(4, 0, "2024-03-05 08:16:00").slot("3-4");
  waiting(5, 1, "2024-03-05 08:15:00").slot("4-5");
  host.channel(6).attached("5-6", 6);
  host.camera(4, "3-4").behindBridge("/devices/pci0000:00/0000:00:1d.0/0000:04:00.0");
  host.camera(5, "4-5").behindBridge(kController);
  host.camera(6, "5-6").behindBridge(kController);
  handOver();
  EXPECT_EQ(host.channel(6).get("conflictch"), "5");
}

TEST_F(AHandOver, OfMode1ChoosesAsOfMode0) {
  waiting(5, 1, "2024-03-05 08:15:00");
  EXPECT_EQ(handOver(1), 0);
  EXPECT_EQ(profile, 1);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch5/conflictch=-1", "ch2/conflictch=5"));
}

TEST_F(AHandOver, OfAnotherModeOnlyWritesItsValue) {
  waiting(4, 0, "2024-03-05 08:15:00");
  waiting(5, 1, "2024-03-05 08:16:00");
  for (const int mode : {2, 3, 5, -1}) {
    host.channel(4).conflict(2);
    host.channel(5).conflict(2);
    EXPECT_EQ(handOver(mode, 8), 0);
    EXPECT_EQ(profile, 99);
    EXPECT_EQ(host.channel(4).get("conflictch") + host.channel(5).get("conflictch"), "88");
    EXPECT_EQ(host.channel(2).get("conflictch"), "-1");
  }
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AHandOver, AsksForTheHostOnlyWithASuccessorAndInModes0And4) {
  for (const int mode : {0, 1, 4}) handOver(mode);
  EXPECT_THAT(host.journal.commands(), Not(Contains(kProcessorCommand)));
  waiting(5, 1, "2024-03-05 08:15:00");
  handOver(1);
  EXPECT_THAT(host.journal.commands(), Not(Contains(kProcessorCommand)));
}

TEST_F(AHandOver, AsksForTheHostOnceAndOutsideTheConfiguration) {
  waiting(4, 0, "2024-03-05 08:15:00");
  for (int i : {5, 6, 7}) host.channel(i).attached("8-" + std::to_string(i), i);
  handOver(0);
  EXPECT_EQ(host.journal.count("system " + std::string(kProcessorCommand)), 1);
  EXPECT_EQ(host.journal.count("popen " + classCommand(4)), 1);
}

TEST_F(AHandOver, ReadsWritesReadsAndWrites) {
  waiting(4, 0, "2024-03-05 08:15:00");
  handOver();
  EXPECT_THAT(host.journal.only({"open", "close"}),
              ElementsAre("open r", "close", "open w", "close", "open r", "close", "open w", "close"));
}

TEST_F(AHandOver, FailsWithTheAnswer99WhenTheFirstOpenFails) {
  waiting(4, 0, "2024-03-05 08:15:00");
  host.config.failReadOpens(-5);
  EXPECT_EQ(handOver(), -1);
  EXPECT_EQ(profile, 99);
  EXPECT_EQ(message, openFailure(-5));
}

TEST_F(AHandOver, FailsAtALaterOpenWithWhatWasWrittenBefore) {
  for (const int number : {2, 3, 4}) {
    waiting(4, 0, "2024-03-05 08:15:00");
    host.channel(2).conflict(-1);
    host.config.failOpenNumber(number, -5);
    EXPECT_EQ(handOver(), -1) << number;
    EXPECT_EQ(message, openFailure(-5)) << number;
    EXPECT_EQ(host.channel(4).get("conflictch"), number == 2 ? "2" : "-1");
  }
}

TEST_F(AHandOver, IsOfOneOfTheTenChannels) {
  profile = 7;
  for (const int channel : {-1, 10, 2147483647}) EXPECT_EQ(updateConflict(channel, -1, 0, &profile), -1);
  EXPECT_EQ(updateConflict(2, -1, 0, nullptr), -1);
  EXPECT_EQ(profile, 7);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class AHandOverOnAHostOfOneChannel : public AHandOver {
 protected:
  AHandOverOnAHostOfOneChannel() {
    host.limitToOneChannel();
    waiting(4, 0, "2024-03-05 08:16:00");
    waiting(5, 1, "2024-03-05 08:15:00");
  }
};

TEST_F(AHandOverOnAHostOfOneChannel, MakesTheOtherWaitingOnesWaitAgainInMode0) {
  handOver(0);
  EXPECT_EQ(profile, 1);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch5/conflictch=-1", "ch4/conflictch=5", "ch4/conflictch=5"));
}

TEST_F(AHandOverOnAHostOfOneChannel, MakesTheHolderWaitTooInMode4) {
  handOver(4);
  EXPECT_EQ(host.channel(5).get("conflictch"), "-1");
  EXPECT_EQ(host.channel(4).get("conflictch"), "5");
  EXPECT_EQ(host.channel(2).get("conflictch"), "5");
}

TEST_F(AHandOverOnAHostOfOneChannel, WritesItsValueToTheSuccessorOnly) {
  handOver(0, 7);
  EXPECT_EQ(host.channel(5).get("conflictch"), "7");
  EXPECT_EQ(host.channel(4).get("conflictch"), "5");
}

TEST_F(AHandOverOnAHostOfOneChannel, WorksAsUsualInMode1) {
  handOver(1);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch4/conflictch=-1", "ch5/conflictch=-1", "ch2/conflictch=5", "ch4/conflictch=5"));
}

TEST_F(AHandOverOnAHostOfOneChannel, MakesEveryAttachedCameraWaitWhateverItsPort) {
  host.channel(2).exists(1).vnode(2);
  host.channel(8).attached("7-1", 8);
  handOver(0);
  EXPECT_EQ(host.channel(8).get("conflictch"), "5");
  EXPECT_EQ(host.channel(2).get("conflictch"), "5");
}

TEST_F(AHandOverOnAHostOfOneChannel, FailsAtALaterOpenWithWhatWasWrittenBefore) {
  for (const int number : {2, 3, 4}) {
    host.channel(4).conflict(2);
    host.channel(5).conflict(2);
    host.config.failOpenNumber(number, -5);
    EXPECT_EQ(handOver(), -1) << number;
    EXPECT_EQ(message, openFailure(-5)) << number;
    EXPECT_EQ(host.channel(5).get("conflictch"), number == 2 ? "2" : "-1");
  }
}

TEST_F(AHandOverOnAHostOfOneChannel, WithoutASuccessorReleasesEveryone) {
  host.channel(4).exists(0);
  host.channel(5).exists(0);
  handOver(4);
  EXPECT_EQ(profile, 99);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch4/conflictch=-1", "ch5/conflictch=-1"));
}

}  // namespace
}  // namespace contract
