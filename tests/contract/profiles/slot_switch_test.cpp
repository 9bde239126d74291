// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What switching a USB slot on or off does to its channel and to the others.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// The slot 1-1.1 with a camera of profile 3 on channel 4. Channel 9, which the scan reads last, has no device.
class APortSwitch : public ContractTest {
 protected:
  APortSwitch() { camera(4, 3, "1-1.1"); }

  // A camera that could stream; its node is its channel's number.
  HostChannel camera(int number, int profile, const std::string &slot) {
    return host.channel(number).attached(slot, number).streaming(profile);
  }
  HostChannel own() { return host.channel(4); }

  int set(const std::string &state, const char *client = "192.168.1.2") {
    host.journal.clear();
    OutputCapture output;
    const int result = vl_set_usbslot_switch("1-1.1", state.c_str(), client);
    message = output.text();
    return result;
  }
  int on() { return set("enable"); }
  int off() { return set("disable"); }

  Lines logged() const { return host.journal.only({"log"}); }
  Lines writes() const { return host.config.writes(); }

  // "event 6 profile 3 nodes 0 1 flag 0 target 3"; "" when nothing was sent.
  std::string notified() const {
    if (host.network.datagrams().empty()) return "";
    EXPECT_THAT(host.network.datagrams(), SizeIs(1));
    const Datagram sent = host.network.datagrams()[0];
    EXPECT_EQ(sent.bytes.substr(0, 32), "ORDA_VLM2_CFCG_N" + std::string(16, '\0'));
    return "event " + std::to_string(sent.word(48)) + " profile " + std::to_string(sent.word(32)) + " nodes " +
           std::to_string(sent.word(36)) + " " + std::to_string(sent.word(40)) + " flag " +
           std::to_string(sent.word(44)) + " target " + std::to_string(sent.word(52));
  }

  std::string message;
};

class APortThatIsSwitchedOn : public APortSwitch {};

TEST_F(APortThatIsSwitchedOn, WritesLogsAndNotifies) {
  own().slotSwitch(0);
  EXPECT_EQ(on(), 0);
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=1", "ch4/conflictch=-1"));
  EXPECT_THAT(logged(), ElementsAre("log 0 USB slot [1-1.1] has been enabled."));
  EXPECT_EQ(notified(), "event 6 profile 3 nodes 0 1 flag 0 target 3");
}

TEST_F(APortThatIsSwitchedOn, IsReadWrittenLoggedAndNotifiedInTurn) {
  on();
  const Lines lines = host.journal.lines();
  ASSERT_THAT(lines, SizeIs(8));
  EXPECT_THAT(
      Lines(lines.begin(), lines.begin() + 7),
      ElementsAre("open r", "close", "open r", "close", "open w", "close", "log 0 USB slot [1-1.1] has been enabled."));
}

TEST_F(APortThatIsSwitchedOn, WaitsForAStreamingCameraOnItsRootPort) {
  camera(7, 1, "1-1.4");
  EXPECT_EQ(on(), 0);
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=1", "ch4/conflictch=7"));
  EXPECT_THAT(logged(), SizeIs(1));
  EXPECT_EQ(notified(), "");
}

TEST_F(APortThatIsSwitchedOn, LosesItsOldConflictMark) {
  own().conflict(8);
  on();
  EXPECT_EQ(own().get("conflictch"), "-1");
}

TEST_F(APortThatIsSwitchedOn, WaitsForAStreamingCameraBehindItsBridge) {
  camera(7, 1, "2-1");
  host.camera(4, "1-1.1").behindBridge(kController);
  host.camera(7, "2-1").behindBridge(kController);
  on();
  EXPECT_EQ(own().get("conflictch"), "7");
}

TEST_F(APortThatIsSwitchedOn, DoesNotConflictWithACameraBehindAnotherBridge) {
  camera(7, 1, "2-1");
  host.camera(4, "1-1.1").behindBridge(kController);
  host.camera(7, "2-1").behindBridge(kOtherController);
  on();
  EXPECT_EQ(own().get("conflictch"), "-1");
  EXPECT_EQ(notified(), "event 6 profile 3 nodes 0 1 flag 0 target 3");
}

TEST_F(APortThatIsSwitchedOn, DoesNotConflictWithACameraBehindNoBridge) {
  camera(7, 1, "2-1");
  host.camera(4, "1-1.1").behindBridge(kController);
  on();
  EXPECT_EQ(own().get("conflictch"), "-1");
}

TEST_F(APortThatIsSwitchedOn, MakesACameraWithoutAProfileWait) {
  camera(7, -1, "1-1.4");
  on();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=1", "ch7/conflictch=4", "ch4/conflictch=-1"));
  EXPECT_EQ(notified(), "event 6 profile 3 nodes 0 1 flag 0 target 3");
}

TEST_F(APortThatIsSwitchedOn, MakesTheCamerasOfTheFirstAndTheLastChannelWaitToo) {
  for (const int other : {0, 9}) {
    camera(other, -1, "1-1." + std::to_string(other + 2));
    on();
    EXPECT_EQ(host.channel(other).get("conflictch"), "4");
  }
}

TEST_F(APortThatIsSwitchedOn, WaitsForTheFirstAndTheLastChannelToo) {
  for (const int other : {0, 9}) {
    camera(other, 1, "1-1.2").slotSwitch(1);
    on();
    EXPECT_EQ(own().get("conflictch"), std::to_string(other));
    camera(other, 1, "9-9");
  }
}

TEST_F(APortThatIsSwitchedOn, MayBeOnTheFirstChannel) {
  own().exists(0);
  camera(0, 3, "1-1.1").slotSwitch(0);
  EXPECT_EQ(on(), 0);
  EXPECT_EQ(host.channel(0).get("slot_switch"), "1");
}

TEST_F(APortThatIsSwitchedOn, MakesACameraThatIsSwitchedOffWait) {
  camera(7, 1, "1-1.4").slotSwitch(0);
  on();
  EXPECT_EQ(host.channel(7).get("conflictch"), "4");
  EXPECT_EQ(own().get("conflictch"), "-1");
}

TEST_F(APortThatIsSwitchedOn, TakesASwitchThatWasNeverStoredAsOn) {
  camera(7, 1, "1-1.4");
  host.config.erase("ch7/slot_switch");
  on();
  EXPECT_EQ(own().get("conflictch"), "7");
}

TEST_F(APortThatIsSwitchedOn, KeepsTheMarksMadeBeforeAStreamingCameraWasFound) {
  camera(1, -1, "1-1.2");
  camera(7, 1, "1-1.4");
  camera(8, -1, "1-1.5");
  on();
  EXPECT_THAT(writes(), ElementsAre("ch1/conflictch=4", "ch4/slot_switch=1", "ch4/conflictch=7"));
}

TEST_F(APortThatIsSwitchedOn, MakesNoCameraWaitWithoutAProfileOfItsOwn) {
  own().profile(-1);
  camera(7, -1, "1-1.4");
  on();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=1", "ch4/conflictch=-1"));
  EXPECT_EQ(notified(), "event 6 profile -1 nodes 0 1 flag 0 target -1");
}

TEST_F(APortThatIsSwitchedOn, DoesNotChangeAWaitingAnAbsentAndANodelessChannel) {
  camera(6, 0, "1-1.2").conflict(9);
  camera(7, 1, "1-1.3").exists(0);
  camera(8, 2, "1-1.4").vnode(-1);
  on();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=1", "ch4/conflictch=-1"));
}

TEST_F(APortThatIsSwitchedOn, IsNotifiedByTheCodecOfChannelNine) {
  own().vcodec(0);
  on();
  EXPECT_NE(notified(), "");
}

TEST_F(APortThatIsSwitchedOn, IsNotNotifiedWhenChannelNineIsH264) {
  host.channel(9).vcodec(0);
  on();
  EXPECT_EQ(notified(), "");
  EXPECT_THAT(logged(), SizeIs(1));
}

TEST_F(APortThatIsSwitchedOn, OnChannelNineIsNotifiedByTheCodecOfChannelEight) {
  own().exists(0);
  camera(9, 3, "1-1.1").vcodec(0);
  on();
  EXPECT_NE(notified(), "");
}

TEST_F(APortThatIsSwitchedOn, OnChannelNineIsNotNotifiedWhenChannelEightIsH264) {
  own().exists(0);
  camera(9, 3, "1-1.1");
  host.channel(8).vcodec(0);
  on();
  EXPECT_EQ(notified(), "");
}

TEST_F(APortThatIsSwitchedOn, WithOnlySoundIsNotNotified) {
  own().vnode(-1).anode(1);
  EXPECT_EQ(on(), 0);
  EXPECT_THAT(logged(), SizeIs(1));
  EXPECT_EQ(notified(), "");
}

TEST_F(APortThatIsSwitchedOn, SucceedsWhenItCannotBeNotified) {
  host.network.failSends();
  EXPECT_EQ(on(), 0);
}

TEST_F(APortThatIsSwitchedOn, AsksNothingWhenThereIsNoOtherCamera) {
  on();
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(APortThatIsSwitchedOn, AsksEachQuestionOnce) {
  for (const int i : {5, 6, 7}) camera(i, 1, std::to_string(i) + "-1");
  host.camera(4, "1-1.1").behindBridge(kController);
  on();
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand), 1);
  EXPECT_EQ(host.journal.count("popen " + classCommand(4)), 1);
  EXPECT_EQ(host.journal.count("popen " + deviceLineCommand(4)), 1);
}

class OnAOneChannelHostAPort : public APortSwitch {
 protected:
  OnAOneChannelHostAPort() { host.limitToOneChannel(); }
};

TEST_F(OnAOneChannelHostAPort, WaitsForAnyStreamingCamera) {
  camera(7, 1, "2-1");
  on();
  EXPECT_EQ(own().get("conflictch"), "7");
  EXPECT_EQ(notified(), "");
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand), 1);
}

TEST_F(OnAOneChannelHostAPort, ThatHasToWaitHandsItsOwnConflictsOver) {
  camera(7, 1, "2-1");
  camera(8, 2, "3-1").conflict(4);
  on();
  // updateConflict finds that the channel waits already, and so leaves those that wait for it.
  EXPECT_EQ(own().get("conflictch"), "7");
  EXPECT_EQ(host.channel(8).get("conflictch"), "4");
  EXPECT_EQ(host.journal.count("open r"), 3);
}

TEST_F(OnAOneChannelHostAPort, ThatNeedNotWaitHandsNothingOver) {
  on();
  EXPECT_EQ(host.journal.count("open r"), 2);
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

class APortThatIsSwitchedOff : public APortSwitch {};

TEST_F(APortThatIsSwitchedOff, WritesLogsAndNotifies) {
  EXPECT_EQ(off(), 0);
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=0", "ch4/conflictch=-1"));
  EXPECT_THAT(logged(), ElementsAre("log 0 USB slot [1-1.1] has been disabled."));
  EXPECT_EQ(notified(), "event 7 profile 3 nodes -1 -1 flag 0 target -1");
}

TEST_F(APortThatIsSwitchedOff, WithoutAProfileIsNotNotified) {
  own().profile(-1);
  EXPECT_EQ(off(), 0);
  EXPECT_EQ(own().get("slot_switch"), "0");
  EXPECT_THAT(logged(), ElementsAre("log 0 USB slot [1-1.1] has been disabled."));
  EXPECT_EQ(notified(), "");
}

TEST_F(APortThatIsSwitchedOff, IsNotifiedWhateverTheCodecs) {
  host.channel(9).vcodec(0);
  off();
  EXPECT_NE(notified(), "");
}

TEST_F(APortThatIsSwitchedOff, WithOnlySoundIsNotNotified) {
  own().vnode(-1).anode(1);
  EXPECT_EQ(off(), 0);
  EXPECT_EQ(notified(), "");
}

TEST_F(APortThatIsSwitchedOff, HandsOverToTheChannelThatWaitsForIt) {
  camera(6, 1, "1-1.2").conflict(4).createTime("2024-03-05 08:15:00");
  EXPECT_EQ(off(), 0);
  EXPECT_EQ(host.channel(6).get("conflictch"), "-1");
  EXPECT_EQ(own().get("conflictch"), "6");
  EXPECT_EQ(notified(), "event 7 profile 3 nodes -1 -1 flag 0 target 1");
}

TEST_F(APortThatIsSwitchedOff, HandsNothingOverWhenItWaitedItself) {
  own().conflict(8);
  camera(6, 1, "1-1.2").conflict(4);
  off();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=0", "ch4/conflictch=-1"));
  EXPECT_EQ(host.channel(6).get("conflictch"), "4");
  EXPECT_EQ(notified(), "event 7 profile 3 nodes -1 -1 flag 0 target -1");
}

TEST_F(APortThatIsSwitchedOff, IsMarkedToWaitForAStreamingCameraNevertheless) {
  camera(7, 1, "1-1.4");
  off();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=0", "ch4/conflictch=7"));
}

TEST_F(APortThatIsSwitchedOff, MakesNoCameraWait) {
  camera(6, -1, "1-1.2");
  camera(7, 1, "1-1.4").slotSwitch(0);
  off();
  EXPECT_THAT(writes(), ElementsAre("ch4/slot_switch=0", "ch4/conflictch=-1"));
}

TEST_F(APortThatIsSwitchedOff, AsksNothingAboutCamerasThatCannotMatter) {
  camera(6, -1, "2-1");
  camera(7, 1, "3-1").slotSwitch(0);
  off();
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(APortThatIsSwitchedOff, IsAnyTextButEnable) {
  for (const char *state : {"Enable", "on", "enable ", "", "1"}) {
    own().slotSwitch(1);
    EXPECT_EQ(set(state), 0);
    EXPECT_EQ(own().get("slot_switch"), "0") << state;
  }
}

class AnyPortSwitch : public APortSwitch {};

TEST_F(AnyPortSwitch, NeedsNoClient) {
  EXPECT_EQ(set("enable", nullptr), 0);
  EXPECT_EQ(set("enable", "no address"), 0);
}

TEST_F(AnyPortSwitch, OfAPortWithoutADeviceFailsBeforeAnythingElse) {
  own().exists(0);
  camera(6, 1, "1-1.2");
  EXPECT_EQ(on(), -1);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AnyPortSwitch, OfAPortInTwoChannelsSwitchesTheLast) {
  camera(6, 1, "1-1.1");
  on();
  EXPECT_THAT(writes(), Contains("ch6/slot_switch=1"));
  EXPECT_THAT(writes(), Not(Contains("ch4/slot_switch=1")));
}

TEST_F(AnyPortSwitch, ThatCannotReadThePortPrintsTheUsualMessage) {
  host.config.failReadOpens(-3);
  EXPECT_EQ(on(), -1);
  EXPECT_EQ(message, openFailure(-3));
}

TEST_F(AnyPortSwitch, ThatCannotReadHasAMessageOfItsOwn) {
  host.config.failOpenNumber(2, -3);
  EXPECT_EQ(on(), -1);
  EXPECT_EQ(message, "open read [/etc/config/usbdev.conf] failed, ret: -3\n");
  EXPECT_THAT(writes(), IsEmpty());
  EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(AnyPortSwitch, ThatCannotWriteHasAMessageOfItsOwn) {
  host.config.failWriteOpens(0);
  EXPECT_EQ(on(), -1);
  EXPECT_EQ(message, "open write [/etc/config/usbdev.conf] failed, ret: 0\n");
  EXPECT_THAT(logged(), IsEmpty());
  EXPECT_EQ(notified(), "");
}

TEST_F(AnyPortSwitch, SucceedsWhenItsHandOverFails) {
  host.config.failOpenNumber(4, -3);
  EXPECT_EQ(off(), 0);
  EXPECT_EQ(message, openFailure(-3));
  EXPECT_THAT(logged(), SizeIs(1));
  EXPECT_EQ(notified(), "event 7 profile 3 nodes -1 -1 flag 0 target -1");
}

TEST_F(AnyPortSwitch, IsRefusedWithoutAPortOrAState) {
  EXPECT_EQ(vl_set_usbslot_switch(nullptr, "enable", "192.168.1.2"), -1);
  EXPECT_EQ(vl_set_usbslot_switch("1-1.1", nullptr, "192.168.1.2"), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
