// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which camera yields to which when one comes or goes, and what the caller is told about it.
#include <algorithm>

#include "hotplug_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// The camera comes to port 1-1.1; channel 6 is attached at port 1-1.6 of the same root port.
class ACameraOnASharedPort : public HotplugTest {
 protected:
  ACameraOnASharedPort() {
    place("1-1.1", kName);
    other(6, "1-1.6", 2);
  }

  HostChannel other(int number, const std::string &slot, int its_profile) {
    return known(number, 1, its_profile, slot, "Other " + std::to_string(number))
        .conflict(-1)
        .profileName("Yard " + std::to_string(number));
  }
  std::string mark(int number) { return host.channel(number).get("conflictch"); }
};

TEST_F(ACameraOnASharedPort, WaitsForAChannelWithAProfile) {
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(mark(0), "6");
  EXPECT_EQ(mark(6), "-1");
}

TEST_F(ACameraOnASharedPort, IsReportedWithTheChannelItWaitsFor) {
  plug();
  EXPECT_EQ(report.channel, 6);
  EXPECT_EQ(report.profile, 2);
  EXPECT_STREQ(report.profilename, "Yard 6");
  EXPECT_STREQ(report.devname, "Other 6");
}

TEST_F(ACameraOnASharedPort, WithAProfileMakesAChannelWithoutOneWait) {
  other(6, "1-1.6", -1);
  known(3, 1, 1, "1-1.1").profileName("Door");
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(mark(6), "3");
  EXPECT_EQ(mark(3), "-1");
  EXPECT_EQ(report.channel, 3);
  EXPECT_EQ(report.profile, -1);
  EXPECT_STREQ(report.profilename, "Door");
  EXPECT_STREQ(report.devname, "Other 6");
}

TEST_F(ACameraOnASharedPort, WithAProfileWaitsForAChannelWithOne) {
  known(3, 1, 1, "1-1.1");
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(mark(3), "6");
}

TEST_F(ACameraOnASharedPort, WithoutAProfileDoesNotChangeAChannelWithoutOne) {
  other(6, "1-1.6", -1);
  plug();
  EXPECT_EQ(mark(0), "-1");
  EXPECT_EQ(mark(6), "-1");
  EXPECT_TRUE(isReportUntouched());
}

TEST_F(ACameraOnASharedPort, IsJudgedByTheFirstConflictOnly) {
  other(4, "1-1.4", -1);
  plug();
  EXPECT_EQ(mark(0), "-1");
  EXPECT_STREQ(report.devname, "Other 4");
  EXPECT_TRUE(isReportUntouched());
}

TEST_F(ACameraOnASharedPort, WithoutAConflictIsReportedWithTheLastNameRead) {
  host.channel(6).slot("1-2");
  host.channel(9).name("Ninth");
  plug();
  EXPECT_STREQ(report.devname, "Ninth");
  EXPECT_TRUE(isReportUntouched());
}

TEST_F(ACameraOnASharedPort, IsComparedWithTheFirstAndTheLastChannelToo) {
  for (const int first_or_last : {0, 9}) {
    host.channel(6).exists(0);
    known(3, 0, -1, "1-1.1");
    other(first_or_last, "1-1.9", 3);
    EXPECT_EQ(plug(), 3);
    EXPECT_EQ(mark(3), std::to_string(first_or_last));
    host.channel(first_or_last).exists(0);
  }
}

TEST_F(ACameraOnASharedPort, SkipsDetachedOnes) {
  host.channel(6).exists(0);
  plug();
  EXPECT_EQ(mark(0), "-1");
}

TEST_F(ACameraOnASharedPort, CountsADisplacedOneAsAttached) {
  host.channel(6).exists(-1);
  plug();
  EXPECT_EQ(mark(0), "6");
}

TEST_F(ACameraOnASharedPort, SkipsOnesWithoutANode) {
  host.channel(6).vnode(-1);
  plug();
  EXPECT_EQ(mark(0), "-1");
}

TEST_F(ACameraOnASharedPort, SkipsWaitingAndUnsupportedOnes) {
  for (const int parked : {0, 5, 999}) {
    host.channel(6).conflict(parked);
    plug();
    EXPECT_EQ(mark(0), "-1") << parked;
  }
}

TEST_F(ACameraOnASharedPort, ThatIsUnsupportedIsMarkedAndNotReported) {
  host.files.write(kNoSupportList, "HD Webcam\n");
  plug();
  EXPECT_EQ(mark(0), "999");
  EXPECT_TRUE(isReportUntouched());
  EXPECT_STREQ(report.devname, "Other 6");
}

TEST_F(ACameraOnASharedPort, ThatIsUnsupportedMakesNoCameraWaitAndIsReportedNevertheless) {
  host.camera(2, "1-1.1").listing("");
  other(6, "1-1.6", -1);
  known(3, 1, 1, "1-1.1").profileName("Garden");
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(mark(3), "999");
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(report.channel, 3);
  EXPECT_EQ(report.profile, -1);
  EXPECT_STREQ(report.profilename, "Garden");
}

TEST_F(ACameraOnASharedPort, NeedsNoQuestionAboutHostOrBridge) {
  host.channel(9).exists(0);
  known(8, 1, 3, "1-1.8").conflict(6);
  host.channel(6).profile(-1);
  plug();
  EXPECT_EQ(host.journal.count("system " + std::string(kProcessorCommand)), 1);  // the format query's own
  EXPECT_THAT(host.journal.commands(), Not(Contains(classCommand(2))));
}

TEST_F(ACameraOnASharedPort, HandsNothingOver) {
  plug();
  EXPECT_THAT(host.journal.only({"open", "close"}), ElementsAre("open r", "close", "open w", "close"));
}

class ACameraBehindABridge : public ACameraOnASharedPort {
 protected:
  ACameraBehindABridge() {
    other(6, "4-6", 2);
    host.camera(2, "1-1.1").behindBridge(kController);
    host.camera(26, "4-6").behindBridge(kController);
  }
};

TEST_F(ACameraBehindABridge, WaitsForAnotherBehindIt) {
  plug();
  EXPECT_EQ(mark(0), "6");
}

TEST_F(ACameraBehindABridge, DoesNotConflictWithOneBehindAnotherBridge) {
  host.camera(26, "4-6").behindBridge("/devices/pci0000:00/0000:00:1d.0/0000:04:00.0");
  plug();
  EXPECT_EQ(mark(0), "-1");
}

TEST_F(ACameraBehindABridge, IsNotAskedForItWithoutAnotherToTest) {
  host.channel(6).exists(0);
  plug();
  EXPECT_THAT(host.journal.commands(), Not(Contains(classCommand(2))));
}

TEST_F(ACameraBehindABridge, IsAskedForItOnceAmongNine) {
  for (int i = 1; i < 10; ++i) {
    other(i, "5-" + std::to_string(i), i == 9 ? 3 : -1);
    host.camera(20 + i, "5-1").behindBridge("/devices/pci0000:00/0000:00:1d.0/0000:04:00.0");
  }
  EXPECT_EQ(plug(), 0);
  const Lines asked = host.journal.commands();
  EXPECT_EQ(std::count(asked.begin(), asked.end(), kProcessorCommand), 2);  // one is the format query's own
  for (int node : {2, 21, 25, 29}) {
    EXPECT_EQ(std::count(asked.begin(), asked.end(), classCommand(node)), 1) << node;
    EXPECT_EQ(std::count(asked.begin(), asked.end(), deviceLineCommand(node)), 1) << node;
  }
}

class ACameraOnAHostOfOneChannel : public ACameraOnASharedPort {
 protected:
  ACameraOnAHostOfOneChannel() { host.limitToOneChannel(); }
};

TEST_F(ACameraOnAHostOfOneChannel, WaitsWhateverThePort) {
  host.channel(6).slot("7-1");
  plug();
  EXPECT_EQ(mark(0), "6");
  EXPECT_EQ(report.channel, 6);
}

TEST_F(ACameraOnAHostOfOneChannel, HandsOverAfterItsWritesButWaitsItself) {
  plug();
  EXPECT_THAT(host.journal.only({"open", "close"}),
              ElementsAre("open r", "close", "open w", "close", "open r", "close"));
  EXPECT_EQ(mark(0), "6");
}

TEST_F(ACameraOnAHostOfOneChannel, HandsNothingOverWithoutAConflict) {
  host.channel(6).exists(0);
  plug();
  EXPECT_THAT(host.journal.only({"open", "close"}), ElementsAre("open r", "close", "open w", "close"));
  EXPECT_EQ(host.journal.count("system " + std::string(kProcessorCommand)), 1);
}

TEST_F(ACameraOnAHostOfOneChannel, AsksForTheHostOnceBesideTheFormatQuery) {
  host.channel(6).slot("7-1");
  plug();
  EXPECT_EQ(host.journal.count("system " + std::string(kProcessorCommand)), 2);
}

class ACameraThatLeavesASharedPort : public ACameraOnASharedPort {
 protected:
  ACameraThatLeavesASharedPort() {
    known(3, 1, 1, "1-1.1").conflict(-1);
    other(6, "1-1.6", 2).conflict(3).slotSwitch(1).createTime("2024-03-05 08:15:00");
  }
};

TEST_F(ACameraThatLeavesASharedPort, HandsOverToTheOneThatWaits) {
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(mark(3), "6");
}

TEST_F(ACameraThatLeavesASharedPort, HandsNothingOverWhenItWaitedItself) {
  host.channel(3).conflict(5);
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(mark(6), "3");
  EXPECT_EQ(mark(3), "-1");
}

TEST_F(ACameraThatLeavesASharedPort, HandsOverOnAHostOfOneChannelToo) {
  host.limitToOneChannel();
  pullOut();
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(mark(3), "-1");
}

TEST_F(ACameraThatLeavesASharedPort, HandsOverWhenItsSoundCardIsRemoved) {
  device.devtype = 0;
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

}  // namespace
}  // namespace contract
