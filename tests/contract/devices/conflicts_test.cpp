// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which devices cannot stream at the same time, and how the marks of that are recomputed.
#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <utility>

#include "contract_test.h"

namespace contract {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class TwoDevices : public ContractTest {
 protected:
  // The other one is on node 5; this one's bridge, if any, has the path kController.
  int conflict(std::string other_slot, const std::string &slot, bool on_bridge = false) {
    const std::string bridge = std::string(kController) + std::string(256, '\0');
    const int result = chkconflict(other_slot.data(), slot.c_str(), on_bridge, 5, bridge.c_str());
    other_slot_after = other_slot.c_str();
    return result;
  }

  std::string other_slot_after;
};

TEST_F(TwoDevices, OnOneRootPortConflict) {
  EXPECT_EQ(conflict("1-1.2", "1-1.4"), 1);
  EXPECT_EQ(conflict("1-1", "1-1.4.3"), 1);
  EXPECT_EQ(conflict("1-1", "1-1"), 1);
}

TEST_F(TwoDevices, OnDifferentRootPortsDoNot) {
  EXPECT_EQ(conflict("1-1.2", "1-2"), 0);
  EXPECT_EQ(conflict("1-1.2", "1-11.2"), 0);
  EXPECT_EQ(conflict("1-11", "1-1"), 0);
}

TEST_F(TwoDevices, ShowTheOthersRootPortToTheCaller) {
  conflict("1-1.2.3", "1-2");
  EXPECT_EQ(other_slot_after, "1-1");
  conflict("1-3", "1-2");
  EXPECT_EQ(other_slot_after, "1-3");
}

TEST_F(TwoDevices, BehindOneBridgeConflict) {
  host.camera(5, "3-1").behindBridge(kController);
  EXPECT_EQ(conflict("3-1", "3-2", true), 1);
}

TEST_F(TwoDevices, BehindDifferentBridgesDoNot) {
  host.camera(5, "3-1").behindBridge(kOtherController);
  EXPECT_EQ(conflict("3-1", "3-2", true), 0);
}

TEST_F(TwoDevices, OfWhichTheOtherIsBehindNoBridgeDoNot) {
  host.commands.prints(deviceLineCommand(5), "  looking at device '" + std::string(kController) + "/usb3/3-1':\n");
  EXPECT_EQ(conflict("3-1", "3-2", true), 0);
  EXPECT_THAT(host.journal.commands(), Not(Contains(deviceLineCommand(5))));
}

TEST_F(TwoDevices, OfWhichTheOthersBridgeHasNoPathDoNot) {
  host.commands.prints(classCommand(5), "    ATTRS{class}==\"0x060400\"\n");
  EXPECT_EQ(conflict("3-1", "3-2", true), 0);
}

TEST_F(TwoDevices, OfWhichThisOneHasNoBridgeAreNotAskedForTheOthers) {
  host.camera(5, "3-1").behindBridge(kController);
  host.journal.clear();
  EXPECT_EQ(conflict("3-1", "3-2", false), 0);
  EXPECT_THAT(host.journal.commands(), Not(Contains(classCommand(5))));
}

TEST_F(TwoDevices, OnAHostOfOneChannelConflictWhateverTheirPorts) {
  host.limitToOneChannel();
  EXPECT_EQ(conflict("1-1", "3-2"), 1);
  EXPECT_EQ(conflict("", "3-2"), 1);
}

TEST_F(TwoDevices, OfWhichThisOneHasNoBridgePathConflictByTheirPortsOnly) {
  host.camera(5, "3-1").behindBridge(kController);
  std::string slot = "3-1";
  EXPECT_EQ(chkconflict(slot.data(), "3-2", true, 5, nullptr), 0);
  EXPECT_EQ(chkconflict(slot.data(), "3-1", true, 5, nullptr), 1) << "they share the root port";
  EXPECT_THAT(host.journal.commands(), Not(Contains(classCommand(5))));
}

TEST_F(TwoDevices, OfWhichOneIsMissingDoNot) {
  std::string slot = "1-1";
  EXPECT_EQ(chkconflict(nullptr, "1-1", true, 5, kController), 0);
  EXPECT_EQ(chkconflict(slot.data(), nullptr, true, 5, kController), 0);
  EXPECT_EQ(slot, "1-1");
}

class TwoTimes : public ContractTest {};

TEST_F(TwoTimes, AreComparedByDateThenTime) {
  EXPECT_EQ(isElderPf("2024-03-06 00:00:00", "2024-03-05 23:59:59"), 1);
  EXPECT_EQ(isElderPf("2024-03-05 23:59:59", "2024-03-06 00:00:00"), 0);
  EXPECT_EQ(isElderPf("2024-03-05 08:15:01", "2024-03-05 08:15:00"), 1);
  EXPECT_EQ(isElderPf("2024-03-05 08:15:00", "2024-03-05 08:15:01"), 0);
  EXPECT_EQ(isElderPf("2024-03-05 18:00:00", "2024-03-05 09:00:00"), 1);
}

TEST_F(TwoTimes, OfTheSameSecondAreEqual) { EXPECT_EQ(isElderPf("2024-03-05 08:15:00", "2024-03-05 08:15:00"), 2); }

TEST_F(TwoTimes, AreComparedAsNumbers) {
  EXPECT_EQ(isElderPf("20240305 081500", "2024-03-05 08:15:00"), 2);
  EXPECT_EQ(isElderPf("10000-01-01 00:00:00", "9999-12-31 00:00:00"), 1);
}

TEST_F(TwoTimes, OfWhichOneHasNoBlankAreNotCompared) {
  EXPECT_EQ(isElderPf("2024-03-05", "2023-03-05 08:15:00"), 0);
  EXPECT_EQ(isElderPf("2024-03-05 08:15:00", "2023-03-05"), 0);
  EXPECT_EQ(isElderPf("", ""), 0);
}

TEST_F(TwoTimes, OfWhichOneIsMissingAreNotCompared) {
  EXPECT_EQ(isElderPf(nullptr, "2024-03-05 08:15:00"), 0);
  EXPECT_EQ(isElderPf("2024-03-05 08:15:00", nullptr), 0);
}

TEST_F(TwoTimes, MayBeOfAnyLength) {
  const std::string digits(100, '1');
  EXPECT_EQ(isElderPf((digits + " " + digits).c_str(), (digits + " " + digits).c_str()), 2);
  EXPECT_EQ(isElderPf(std::string(500, '1').c_str(), "2024-03-05 08:15:00"), 0);
}

TEST_F(TwoTimes, AreSplitWithinTheirFirst127Bytes) {
  const std::string fits = std::string(126, '0') + " 08:15:00";
  EXPECT_EQ(isElderPf("2024-03-05 08:15:00", fits.c_str()), 1);
  EXPECT_EQ(isElderPf("2024-03-05 08:15:00", ("0" + fits).c_str()), 0);
}

TEST_F(TwoTimes, AreNotChanged) {
  std::string a = "2024-03-05 08:15:00";
  std::string b = a;
  isElderPf(a.data(), b.data());
  EXPECT_EQ(a, "2024-03-05 08:15:00");
  EXPECT_EQ(b, "2024-03-05 08:15:00");
}

// Channel 4 looks for the one it conflicts with; channel 6 is an active one on its root port.
class AChannelInSearch : public ContractTest {
 protected:
  AChannelInSearch() {
    host.channel(4).attached("1-1.1", 4);
    host.channel(6).attached("1-1.2", 6).streaming(2);
  }

  int found() {
    std::array<int, 10> answers;
    answers.fill(77);
    EXPECT_EQ(getConflictCH(4, answers.data()), 0);
    const int own = std::exchange(answers[4], 77);
    EXPECT_THAT(answers, Each(77));
    return own;
  }
};

TEST_F(AChannelInSearch, FindsTheActiveOneOnItsRootPort) { EXPECT_EQ(found(), 6); }

TEST_F(AChannelInSearch, FindsTheFirstOfSeveral) {
  host.channel(9).attached("1-1.3", 9).profile(1);
  EXPECT_EQ(found(), 6);
  host.channel(0).attached("1-1.4", 0).profile(0);
  EXPECT_EQ(found(), 0);
}

TEST_F(AChannelInSearch, FindsTheLastChannel) {
  host.channel(6).slot("1-2");
  host.channel(9).attached("1-1.3", 9).profile(1);
  EXPECT_EQ(found(), 9);
}

TEST_F(AChannelInSearch, LeavesItsAnswerUntouchedWhenThereIsNone) {
  host.channel(6).slot("1-2");
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, SkipsDetachedOnes) {
  host.channel(6).exists(0);
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, CountsADisplacedOneAsAttached) {
  host.channel(6).exists(-1);
  EXPECT_EQ(found(), 6);
}

TEST_F(AChannelInSearch, SkipsOnesWithoutAProfile) {
  host.channel(6).profile(-1);
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, SkipsOnesWithoutANode) {
  host.channel(6).vnode(-1);
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, SkipsWaitingAndUnsupportedOnes) {
  host.channel(6).conflict(4);
  EXPECT_EQ(found(), 77);
  host.channel(6).conflict(999);
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, SkipsSwitchedOffOnes) {
  host.channel(6).slotSwitch(0);
  EXPECT_EQ(found(), 77);
}

TEST_F(AChannelInSearch, TakesASwitchThatWasNeverStoredAsOn) {
  host.config.erase("ch6/slot_switch");
  EXPECT_EQ(found(), 6);
}

TEST_F(AChannelInSearch, FindsOneBehindItsBridge) {
  host.channel(6).slot("3-7");
  host.camera(4, "1-1.1").behindBridge(kController);
  host.camera(6, "3-7").behindBridge(kController);
  EXPECT_EQ(found(), 6);
}

TEST_F(AChannelInSearch, AsksEachQuestionOnceAndOutsideTheConfiguration) {
  for (int i : {6, 7, 8}) host.channel(i).attached("3-" + std::to_string(i), i).profile(i - 5);
  host.camera(4, "1-1.1").behindBridge(kController);
  for (int i : {6, 7, 8}) host.camera(i, "3-1").behindBridge(kOtherController);
  host.processor("AuthenticAMD");
  host.model("TS-873");
  EXPECT_EQ(found(), 77);
  const Lines asked = host.journal.commands();
  for (const std::string &command : asked) EXPECT_EQ(std::count(asked.begin(), asked.end(), command), 1) << command;
  EXPECT_THAT(asked, Contains(classCommand(4)));
  EXPECT_THAT(asked, Contains(classCommand(8)));
}

TEST_F(AChannelInSearch, AsksForNoBridgeWithoutAnotherToTest) {
  host.channel(6).exists(0);
  found();
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AChannelInSearch, FailsWhenTheConfigurationCannotBeOpened) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  std::array<int, 10> answers{};
  EXPECT_EQ(getConflictCH(4, answers.data()), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
}

TEST_F(AChannelInSearch, IsOneOfTheTen) {
  std::array<int, 10> answers{};
  for (const int channel : {-1, 10, 2147483647}) EXPECT_EQ(getConflictCH(channel, answers.data()), -1);
  EXPECT_EQ(getConflictCH(4, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class ARecomputation : public ContractTest {
 protected:
  ARecomputation() {
    states.fill(-1);
    host.channel(1).attached("1-1.1", 1).profile(0);
    host.channel(3).attached("1-1.2", 3).profile(1).conflict(9);
  }

  std::array<int, 10> states;
};

TEST_F(ARecomputation, DoesNotChangeChannelsOfMinusOne) {
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(states, Each(-1));
}

TEST_F(ARecomputation, OfAChannelWritesTheOneItConflictsWith) {
  states[3] = 1;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/conflictch=1"));
}

TEST_F(ARecomputation, OfAChannelWithoutAConflictClearsIt) {
  host.channel(3).slot("1-2");
  states[3] = 1;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/conflictch=-1"));
}

TEST_F(ARecomputation, OfAClearedChannelClearsFirst) {
  states[3] = 0;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/conflictch=-1", "ch3/conflictch=1"));
}

TEST_F(ARecomputation, ClearsBeforeAnythingIsSearched) {
  host.channel(1).conflict(9);
  states[1] = 0;
  states[3] = 1;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_EQ(host.channel(1).get("conflictch"), "-1");  // channel 3 still waits while channel 1 searches
  EXPECT_EQ(host.channel(3).get("conflictch"), "1");
}

TEST_F(ARecomputation, IsOfTheFirstAndTheLastChannelToo) {
  host.channel(0).attached("1-1.7", 0);
  host.channel(9).attached("1-1.8", 9);
  states[0] = states[9] = 0;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch0/conflictch=-1", "ch9/conflictch=-1", "ch0/conflictch=1", "ch9/conflictch=1"));
}

TEST_F(ARecomputation, WritesAnyOtherEntryAsItStands) {
  states[3] = 5;
  states[4] = 999;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/conflictch=5", "ch4/conflictch=999"));
}

TEST_F(ARecomputation, ReportsWhichChannelsWereRecomputed) {
  states = {-1, 0, 1, 5, 999, -1, -1, 9, -2, -1};
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_THAT(states, ElementsAre(-1, 1, 1, -1, -1, -1, -1, -1, -1, -1));
}

TEST_F(ARecomputation, WritesInTwoPassesWithTheSearchBetween) {
  states[3] = 0;
  syncConflict(states.data());
  EXPECT_THAT(host.journal.only({"open", "close"}),
              ElementsAre("open w", "close", "open r", "close", "open w", "close"));
}

TEST_F(ARecomputation, FailsWhenTheFirstPassCannotOpen) {
  host.config.failOpenNumber(1, -3);
  states[3] = 0;
  OutputCapture output;
  EXPECT_EQ(syncConflict(states.data()), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(ARecomputation, ContinuesWhenASearchCannotOpen) {
  host.config.failOpenNumber(2, -3);
  states[3] = 1;
  OutputCapture output;
  EXPECT_EQ(syncConflict(states.data()), 0);
  EXPECT_EQ(output.text(), openFailure(-3));
  EXPECT_THAT(host.config.writes(), ElementsAre("ch3/conflictch=-1"));
}

// Ten searches, each among ten cameras on nodes of which no search before it has asked.
TEST_F(ARecomputation, AsksAboutAnyNumberOfNodes) {
  int node = 0;
  const std::function<void()> renumber = [&] {
    for (int i = 0; i < 10; ++i) {
      host.camera(++node, "").behindBridge(i < 5 ? kController : kOtherController);
      host.channel(i).attached(std::to_string(i), node).profile(0).slotSwitch(1);
    }
    host.config.beforeOpenNumber(1, renumber);
  };
  renumber();
  for (int i = 0; i < 10; ++i) host.channel(i).conflict(-1);
  states.fill(1);
  EXPECT_EQ(syncConflict(states.data()), 0);
  host.config.beforeOpenNumber(0, nullptr);
  for (int i = 0; i < 10; ++i) {
    const int first = i < 5 ? 0 : 5;
    EXPECT_EQ(host.channel(i).get("conflictch"), std::to_string(i == first ? first + 1 : first)) << i;
  }
}

TEST_F(ARecomputation, KeepsItsFirstPassWhenTheLastCannotOpen) {
  host.config.failOpenNumber(3, -3);
  states[3] = 0;
  states[4] = 7;
  OutputCapture output;
  EXPECT_EQ(syncConflict(states.data()), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
  EXPECT_EQ(host.channel(3).get("conflictch"), "-1");
  EXPECT_EQ(host.channel(4).get("conflictch"), "7");
}

TEST_F(ARecomputation, OfNothingFails) {
  EXPECT_EQ(syncConflict(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
