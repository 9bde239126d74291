// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The lists and tables that the settings pages show.
#include <array>
#include <cstring>
#include <string>

#include "contract_test.h"
#include "described_channel.h"
#include "encoding_host.h"
#include "record_text.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class AListing : public ContractTest {
 protected:
  // What the call wrote into a buffer of zeroes; "" when it wrote nothing. Its end is not to be written.
  std::string list(int (*function)(char *)) {
    std::string filled(24, '#');
    OutputCapture output;
    result = function(filled.data());
    message = output.text();
    const size_t end = filled.find('#');
    EXPECT_EQ(filled.substr(end), std::string(24 - end, '#'));
    return filled.substr(0, end);
  }

  int result = 7;
  std::string message;
};

class TheFreeProfiles : public AListing {
 protected:
  std::string list() { return AListing::list(vl_get_available_profile); }
};

TEST_F(TheFreeProfiles, OfAnEmptyHostAreAllFour) {
  EXPECT_EQ(list(), "0,1,2,3");
  EXPECT_EQ(result, 0);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(TheFreeProfiles, AreThoseOfNoChannel) {
  host.channel(0).profile(3);
  host.channel(9).profile(1);
  EXPECT_EQ(list(), "0,2");
}

TEST_F(TheFreeProfiles, AreNotThoseOfAbsentDevices) {
  host.channel(5).profile(0).exists(0);
  EXPECT_EQ(list(), "1,2,3");
}

TEST_F(TheFreeProfiles, MayBeNone) {
  for (int i = 0; i < 4; ++i) host.channel(i).profile(i);
  EXPECT_EQ(list(), "");
  EXPECT_EQ(result, 0);
}

TEST_F(TheFreeProfiles, IgnoreStoredIdsThatAreNotProfiles) {
  host.channel(0).profile(4);
  host.channel(1).profile(-2);
  host.channel(2).profile(2147483647);
  EXPECT_EQ(list(), "0,1,2,3");
}

TEST_F(TheFreeProfiles, AreUnknownWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-6);
  EXPECT_EQ(list(), "");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(message, openFailure(-6));
}

class TheStreamableProfiles : public AListing {
 protected:
  TheStreamableProfiles() { host.commands.allowInsideCriticalSection(); }

  std::string list() { return AListing::list(vl_get_usbdev_list); }

  HostChannel camera(int number, int profile, int node) {
    return host.channel(number).exists(1).profile(profile).vnode(node);
  }
  HostChannel workingCamera(int number, int profile, int node) {
    host.camera(node, "1-1").listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
    return camera(number, profile, node);
  }
  HostChannel card(int number, int profile) { return host.channel(number).exists(1).profile(profile).anode(1); }
};

TEST_F(TheStreamableProfiles, OfAnEmptyHostAreNone) {
  EXPECT_EQ(list(), "");
  EXPECT_EQ(result, 0);
}

TEST_F(TheStreamableProfiles, AreInTheOrderOfTheirChannels) {
  workingCamera(2, 3, 1);
  card(4, 0);
  workingCamera(9, 1, 2);
  EXPECT_EQ(list(), "3,0,1");
  EXPECT_EQ(result, 0);
}

TEST_F(TheStreamableProfiles, OfFourCamerasAskOnceWhetherTheHostMayEncode) {
  allowEncoding(host);
  for (int i = 0; i < 4; ++i) workingCamera(i, i, i);
  EXPECT_EQ(list(), "0,1,2,3");
  for (const char *command : {kModelCommand, kGpuListCommand, kGpuStateCommand}) {
    EXPECT_EQ(host.journal.count(std::string("popen ") + command), 1) << command;
  }
  EXPECT_EQ(host.journal.commands().size(), 5U + 4U * 3U);  // of each camera the processor file, the listing, the rest
}

TEST_F(TheStreamableProfiles, DoNotIncludeACameraWithoutFormats) {
  camera(2, 3, 1);
  EXPECT_EQ(list(), "");
  EXPECT_THAT(host.journal.commands(), Contains(listingCommand(1)));
}

TEST_F(TheStreamableProfiles, DoNotIncludeACameraThatCannotBeAsked) {
  host.commands.cannotStart(listingCommand(1));
  camera(2, 3, 1);
  EXPECT_EQ(list(), "");
}

TEST_F(TheStreamableProfiles, IncludeACameraWithAudioUnasked) {
  camera(2, 3, 1).anode(0);
  EXPECT_EQ(list(), "3");
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(TheStreamableProfiles, AskNoCameraThatIsAbsentWaitsOrHasNoProfile) {
  workingCamera(1, 1, 1).exists(0);
  workingCamera(2, 2, 2).conflict(0);
  workingCamera(3, -1, 3);
  workingCamera(4, 4, 4);
  EXPECT_EQ(list(), "");
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(TheStreamableProfiles, IncludeADisplacedDevice) {
  card(1, 1).exists(-1);
  EXPECT_EQ(list(), "1");
}

TEST_F(TheStreamableProfiles, DoNotIncludeAWaitingCard) {
  card(1, 1).conflict(999);
  EXPECT_EQ(list(), "");
}

TEST_F(TheStreamableProfiles, DoNotIncludeAChannelWithoutNodes) {
  camera(1, 1, -1);
  EXPECT_EQ(list(), "");
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(TheStreamableProfiles, AreAskedForWithTheLockHeld) {
  workingCamera(2, 3, 1);
  list();
  EXPECT_EQ(host.journal.lines().front(), "open r");
  EXPECT_EQ(host.journal.lines().back(), "close");
  EXPECT_EQ(host.journal.count("close"), 1);
}

TEST_F(TheStreamableProfiles, AreCutWhereTheListIsFull) {
  for (int i = 0; i < 10; ++i) card(i, i % 4);
  EXPECT_EQ(list(), "0,1,2,3,0,1,2,");
}

TEST_F(TheStreamableProfiles, AreUnknownWhenTheFileCannotBeOpened) {
  card(1, 1);
  host.config.failReadOpens(-6);
  EXPECT_EQ(list(), "");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(message, openFailure(-6));
}

template <size_t Rows>
class Table : public ContractTest {
 protected:
  Table() { rows.fill(untouched<_usbdev_entry>()); }

  int read(int (*function)(_usbdev_entry *)) {
    OutputCapture output;
    const int result = function(rows.data());
    message = output.text();
    EXPECT_TRUE(isSameRecord(rows[Rows], untouched<_usbdev_entry>())) << "written after the table";
    return result;
  }

  static void fillCommon(_usbdev_entry &row) {
    strcpy(row.profilename, "Front door");
    strcpy(row.usbslot, "3-1.2");
    strcpy(row.devname, "HD Webcam");
    row.slot_switch = 1;
    row.exists = 1;
    row.conflictch = -1;
    strcpy(row.createtime, "2024-03-05 08:15:00");
    row.profile = 2;
  }

  std::array<_usbdev_entry, Rows + 1> rows{};
  std::string message;
};

class TheDeviceTable : public Table<10> {
 protected:
  int read() { return Table::read(vl_get_devpf_list); }
};

TEST_F(TheDeviceTable, HasARowForEachAttachedChannel) {
  describe(host.channel(9));
  EXPECT_EQ(read(), 0);
  _usbdev_entry expected = zeroed<_usbdev_entry>();
  fillCommon(expected);
  expected.stream_type = 3;
  expected.aenable = 6;
  expected.shrenable = 4;
  EXPECT_TRUE(isSameRecord(rows[9], expected));
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(TheDeviceTable, HasARowForEachOfTheTenChannels) {
  for (int i = 0; i < 10; ++i) host.channel(i).exists(1).name(std::to_string(i));
  read();
  for (int i = 0; i < 10; ++i) EXPECT_EQ(rows.at(static_cast<size_t>(i)).devname, std::to_string(i));
}

TEST_F(TheDeviceTable, HasZeroesForAChannelWithoutADevice) {
  describe(host.channel(4)).exists(0);
  read();
  for (size_t i = 0; i < 10; ++i) EXPECT_TRUE(isSameRecord(rows.at(i), zeroed<_usbdev_entry>())) << i;
}

TEST_F(TheDeviceTable, HasTheDefaultsOfAChannelWithNothingStored) {
  host.channel(3).exists(-1);
  read();
  _usbdev_entry expected = zeroed<_usbdev_entry>();
  expected.slot_switch = 1;
  expected.exists = -1;
  expected.conflictch = -1;
  expected.profile = -1;
  expected.aenable = 1;
  EXPECT_TRUE(isSameRecord(rows[3], expected));
}

TEST_F(TheDeviceTable, KeepsTheAudioSettingOfAnAudioOnlyDevice) {
  describeAudioOnly(host.channel(3));
  read();
  EXPECT_EQ(rows[3].stream_type, 1);
  EXPECT_EQ(rows[3].aenable, 6);
}

TEST_F(TheDeviceTable, HasNoAudioForAVideoOnlyDevice) {
  describeVideoOnly(host.channel(3));
  read();
  EXPECT_EQ(rows[3].stream_type, 2);
  EXPECT_EQ(rows[3].aenable, 0);
}

TEST_F(TheDeviceTable, EndsTextsThatFillTheirFields) {
  host.channel(3).exists(1).profileName(std::string(256, 'p')).slot(std::string(128, 's'));
  host.channel(3).name(std::string(256, 'd')).createTime(std::string(128, 'c'));
  read();
  EXPECT_EQ(rows[3].profilename, std::string(255, 'p'));
  EXPECT_EQ(rows[3].usbslot, std::string(127, 's'));
  EXPECT_EQ(rows[3].devname, std::string(255, 'd'));
  EXPECT_EQ(rows[3].createtime, std::string(127, 'c'));
}

TEST_F(TheDeviceTable, IsNotWrittenWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-2);
  EXPECT_EQ(read(), -1);
  EXPECT_EQ(message, openFailure(-2));
  EXPECT_TRUE(isSameRecord(rows[0], untouched<_usbdev_entry>()));
}

class TheProfileTable : public Table<4> {
 protected:
  int read() { return Table::read(vl_get_profile_list); }

  static _usbdev_entry unused() {
    _usbdev_entry row = zeroed<_usbdev_entry>();
    row.profile = -1;
    return row;
  }
};

TEST_F(TheProfileTable, HasARowForEachProfileInUse) {
  describe(host.channel(9));
  EXPECT_EQ(read(), 0);
  _usbdev_entry expected = zeroed<_usbdev_entry>();
  fillCommon(expected);
  expected.stream_type = 3;
  strcpy(expected.vtag, "12345678");
  expected.shrenable = 4;
  strcpy(expected.hlspath, "abcdef");
  EXPECT_TRUE(isSameRecord(rows[2], expected));
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(TheProfileTable, IsReadFromEachOfTheTenChannels) {
  for (int i = 0; i < 10; ++i) {
    host.channel(i).profile(i % 4).name(std::to_string(i));
    read();
    EXPECT_EQ(rows.at(static_cast<size_t>(i) % 4).devname, std::to_string(i));
  }
}

TEST_F(TheProfileTable, HasNothingButTheMissingIdInAnUnusedRow) {
  read();
  for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(isSameRecord(rows.at(i), unused())) << i;
}

TEST_F(TheProfileTable, ShowsMjpegInTwoFields) {
  describeVideoOnly(host.channel(9)).vcodec(1);
  read();
  EXPECT_EQ(rows[2].vcodec, 1);
  EXPECT_EQ(rows[2].mjpeg, 1);
  host.config.erase("ch9/video/vcodec");
  read();
  EXPECT_EQ(rows[2].mjpeg, 1);
}

TEST_F(TheProfileTable, ShowsNothingOfTheStreamOfAProfileWithoutVideo) {
  describeAudioOnly(host.channel(9)).vcodec(1);
  read();
  _usbdev_entry expected = zeroed<_usbdev_entry>();
  fillCommon(expected);
  expected.stream_type = 1;
  EXPECT_TRUE(isSameRecord(rows[2], expected));
}

TEST_F(TheProfileTable, HasARowForAnAbsentDeviceToo) {
  describe(host.channel(9)).exists(0);
  read();
  EXPECT_EQ(rows[2].exists, 0);
  EXPECT_EQ(rows[2].profile, 2);
  EXPECT_STREQ(rows[2].vtag, "12345678");
}

TEST_F(TheProfileTable, IgnoresStoredIdsThatAreNotProfiles) {
  for (const int profile : {-2, 4, 2147483647}) {
    describe(host.channel(9)).profile(profile);
    EXPECT_EQ(read(), 0);
    for (size_t i = 0; i < 4; ++i) EXPECT_TRUE(isSameRecord(rows.at(i), unused())) << i;
  }
}

TEST_F(TheProfileTable, OfTwoChannelsWithOneProfileKeepsWhatTheLaterOneDoesNotFill) {
  describe(host.channel(3)).vcodec(1);
  describeAudioOnly(host.channel(5)).name("Microphone");
  read();
  EXPECT_STREQ(rows[2].devname, "Microphone");
  EXPECT_EQ(rows[2].stream_type, 1);
  EXPECT_EQ(rows[2].mjpeg, 0);
  EXPECT_EQ(rows[2].vcodec, 1);
  EXPECT_STREQ(rows[2].hlspath, "abcdef");
}

TEST_F(TheProfileTable, EndsTextsThatFillTheirFields) {
  describe(host.channel(9)).set("vtag", std::string(16, 't')).set("hlspath", std::string(64, 'h'));
  read();
  EXPECT_EQ(rows[2].vtag, std::string(15, 't'));
  EXPECT_EQ(rows[2].hlspath, std::string(63, 'h'));
}

TEST_F(TheProfileTable, IsNotWrittenWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-2);
  EXPECT_EQ(read(), -1);
  EXPECT_EQ(message, openFailure(-2));
  EXPECT_TRUE(isSameRecord(rows[0], untouched<_usbdev_entry>()));
}

class EveryListing : public ContractTest {};

TEST_F(EveryListing, IsRefusedWithoutAPlaceForIt) {
  EXPECT_EQ(vl_get_available_profile(nullptr), -1);
  EXPECT_EQ(vl_get_usbdev_list(nullptr), -1);
  EXPECT_EQ(vl_get_devpf_list(nullptr), -1);
  EXPECT_EQ(vl_get_profile_list(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
