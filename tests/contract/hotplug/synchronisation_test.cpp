// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Start-up: the channels are brought into line with the devices that are really there.
#include <algorithm>
#include <cstring>
#include <string>

#include "encoding_host.h"
#include "start_fixture.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// --- what is gone ---

TEST_F(AStart, WithoutDevicesMarksEveryConfiguredChannelAbsent) {
  configured(2, "3-1", "Camera").vnode(4).conflict(1).profile(1).set("hlspath", "kept");
  EXPECT_EQ(mn_sync_usbdev_conf(), 1);
  EXPECT_EQ(key(2, "exists"), "0");
  EXPECT_EQ(key(2, "conflictch"), "-1");
  EXPECT_EQ(key(2, "video/vnode"), "-1");
  EXPECT_EQ(key(2, "audio/anode"), "-1");
  EXPECT_EQ(key(2, "hlspath"), "kept") << "a channel with a profile keeps its link name";
}

TEST_F(AStart, ClearsProfileNameTimeAndLinkOfAnAbsentChannelWithoutAProfile) {
  configured(2, "3-1", "Camera").createTime("2024-03-05 08:15:00").profileName("name").set("hlspath", "link");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "createtime"), "");
  EXPECT_EQ(key(2, "profilename"), "");
  EXPECT_EQ(key(2, "hlspath"), "");
  EXPECT_EQ(key(2, "profile"), "-1");
}

TEST_F(AStart, LeavesAChannelThatWasNeverConfigured) {
  mn_sync_usbdev_conf();
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AStart, LeavesAChannelWhoseCameraWasDisplaced) {
  configured(2, "3-1", "Camera").exists(-1);
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "exists"), "-1");
}

TEST_F(AStart, ThatCannotReadTheFileFails) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(mn_sync_usbdev_conf(), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

// --- what is there ---

TEST_F(AStart, GivesAPresentCameraItsNewNode) {
  configured(2, "3-1", "Camera").exists(0).vnode(-1);
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "exists"), "1");
  EXPECT_EQ(key(2, "video/vnode"), "4");
  EXPECT_EQ(key(2, "video/ldspoutput"), "0");
}

TEST_F(AStart, LinksTheLiveStreamOfAProfileAndItsEnabledShareLink) {
  configured(2, "3-1", "Camera").profile(2).set("hlspath", "live");
  host.channel(2).set("sharelink/shrenable", 1).set("sharelink/hash_string", "shared");
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(linking(3, "live"), linking(3, "shared")));
}

TEST_F(AStart, DoesNotLinkADisabledShareLink) {
  configured(2, "3-1", "Camera").profile(2).set("hlspath", "live").set("sharelink/hash_string", "shared");
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(host.journal.only({"exec"}).size(), 1U);
}

TEST_F(AStart, MakesALinkNameForAProfileWithoutOne) {
  host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
  configured(2, "3-1", "Camera").profile(2);
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "hlspath"), "1b4e28ba2fa111d2883f0016d3cca427");
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(linking(3, kHash)));
}

TEST_F(AStart, CarriesTheSwitchOverToTheNextChannelWithoutOne) {
  configured(0, "1-1", "A").slotSwitch(0);
  configured(1, "1-2", "B");
  configured(2, "1-3", "C").slotSwitch(1);
  configured(3, "1-4", "D").slotSwitch(7);
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(0, "slot_switch"), "0");
  EXPECT_EQ(key(1, "slot_switch"), "0");
  EXPECT_EQ(key(2, "slot_switch"), "1");
  EXPECT_EQ(key(3, "slot_switch"), "1");
}

TEST_F(AStart, WithoutAnyStoredSwitchWritesOne) {
  configured(0, "1-1", "A");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(0, "slot_switch"), "1");
}

// --- what is new ---

TEST_F(AStart, PassesANewCameraThroughTheHotplugHandler) {
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(0, "exists"), "1");
  EXPECT_EQ(key(0, "usbslot"), "3-1");
  EXPECT_EQ(key(0, "devname"), "Camera");
  EXPECT_EQ(key(0, "video/vnode"), "4");
}

TEST_F(AStart, TreatsAnotherCameraInAKnownPortAsNew) {
  configured(2, "3-1", "Old").profile(1).conflict(-1);
  camera("3-1", 4, "New");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "exists"), "0");
  EXPECT_EQ(key(2, "devname"), "Old");
  EXPECT_EQ(key(0, "devname"), "New");
}

// --- the whole start ---

TEST_F(AStart, RunsTheCodecCheckBeforeTheSynchronisation) {
  configured(2, "3-1", "Raw").vnode(4).profile(1).set("video/cap", "0");
  EXPECT_EQ(vl_set_devpf_list(), 0);
  EXPECT_EQ(host.config.writes().front(), "ch2/conflictch=999");
}

TEST_F(AStart, OnAOneChannelHostClearsEveryProfileButTheFirst) {
  host.limitToOneChannel();
  configured(0, "1-1", "A").profile(0);
  configured(1, "1-2", "B").profile(1);
  configured(2, "1-3", "C").profile(3);
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(0, "profile"), "0");
  EXPECT_EQ(key(1, "profile"), "-1");
  EXPECT_EQ(key(2, "profile"), "-1");
  ASSERT_EQ(host.network.datagrams().size(), 2U);
  EXPECT_EQ(host.network.datagrams()[0].word(48), 3);
  EXPECT_EQ(host.network.datagrams()[0].bytes.substr(16, 16), std::string(16, '\0'));
}

TEST_F(AStart, AsksWhetherTheHostIsLimitedOnceAtTheMost) {
  host.limitToOneChannel();
  for (int i = 0; i < 4; ++i) {
    const std::string slot = std::to_string(i + 1) + "-1";
    configured(i, slot, "Camera").profile(i).slotSwitch(1);
    camera(slot, i, "Camera");
  }
  mn_sync_usbdev_conf();
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand), 1);
}

TEST_F(AStart, RecomputesTheConflictsOfPresentCameras) {
  configured(2, "3-1.1", "Camera").conflict(7);
  configured(5, "3-1.2", "Camera").profile(1).slotSwitch(1).conflict(-1);
  camera("3-1.1", 4, "Camera");
  camera("3-1.2", 5, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "conflictch"), "5");
  EXPECT_EQ(key(5, "conflictch"), "-1");
}

TEST_F(AStart, DoesNotAskForTheHostWithoutALaterProfile) {
  configured(0, "1-1", "A").profile(0);
  configured(1, "1-2", "B");
  host.channel(2).profile(3);  // never configured
  mn_sync_usbdev_conf();
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand), 0);
}

TEST_F(AStart, RunsItsLaterStepsWhateverTheEarlierReturned) {
  configured(2, "3-1", "Camera");
  host.config.failOpenNumber(2, -4);
  OutputCapture output;
  EXPECT_EQ(mn_sync_usbdev_conf(), 1);
  EXPECT_EQ(output.text(), openFailure(-4));
  EXPECT_EQ(key(2, "exists"), "0") << "the update has run";
}

// --- what is asked once ---

// Ten new cameras at ports of their own, on a host that may encode.
class AStartWithTenNewCameras : public AStart {
 protected:
  AStartWithTenNewCameras() {
    allowEncoding(host);
    for (int i = 0; i < 10; ++i) camera("3-" + std::to_string(i + 1), i, "Camera " + std::to_string(i));
  }

  void expectEncodingAskedOnce() const {
    for (const char *field : {"Install_Path", "Enable"})
      EXPECT_EQ(timesRun(packageQuery("Halvane", field)), 1) << field;
    for (const char *command : {kModelCommand, kGpuListCommand, kGpuStateCommand}) {
      EXPECT_EQ(timesRun(command), 1) << command;
    }
  }
  int timesRun(const std::string &command) const { return host.journal.count("popen " + command); }
};

TEST_F(AStartWithTenNewCameras, AsksOnceWhetherTheHostMayEncode) {
  vl_set_devpf_list();
  expectEncodingAskedOnce();
  EXPECT_EQ(key(9, "exists"), "1");
}

TEST_F(AStartWithTenNewCameras, AsksOnceWithoutTheCodecCheckToo) {
  mn_sync_usbdev_conf();
  expectEncodingAskedOnce();
}

TEST_F(AStartWithTenNewCameras, LeavesTheProcessorFileForEachFormatQuery) {
  vl_set_devpf_list();
  EXPECT_EQ(host.journal.count(std::string("system ") + kProcessorCommand),
            10 + 1);  // and for the one-channel question
}

TEST_F(AStart, NeedsNoListOfADeviceKindThatBroughtNothingNew) {
  _usbdev_update device = {};
  std::string("3-1").copy(device.usbslot, 3);
  for (const int cameras : {0, 1}) {
    for (const int cards : {0, 1}) EXPECT_EQ(sync_usbdev(cameras, nullptr, cards, nullptr), 0);
  }
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_EQ(sync_usbdev(1, &device, 0, nullptr), 0);
  EXPECT_EQ(key(0, "exists"), "1");
  EXPECT_EQ(sync_usbdev(0, nullptr, 1, &device), 0);
  EXPECT_EQ(key(0, "audio/anode"), "-1");
}

// A list of new devices holds ten records. What comes after them here would be an eleventh camera.
class AListOfElevenNewDevices : public AStart {
 protected:
  AListOfElevenNewDevices() {
    for (int i = 0; i < 11; ++i) {
      const std::string slot = "3-" + std::to_string(i + 1);
      slot.copy(devices[i].usbslot, slot.size());
      devices[i].vnode = i;
      camera(slot, i, "Camera");
    }
  }

  _usbdev_update devices[11] = {};
};

TEST_F(AListOfElevenNewDevices, IsReadUpToItsTenthRecord) {
  EXPECT_EQ(sync_usbdev(11, devices, 0, nullptr), 0);
  EXPECT_EQ(host.journal.count("popen " + listingCommand(9)), 1);
  EXPECT_EQ(host.journal.count("popen " + listingCommand(10)), 0);
}

TEST_F(AListOfElevenNewDevices, IsReadUpToItsTenthCard) {
  EXPECT_EQ(sync_usbdev(0, nullptr, 11, devices), 0);
  EXPECT_EQ(host.journal.only({"card"}).size(), 10U);
}

TEST_F(AListOfElevenNewDevices, NamesNoCardByItsEleventhCamera) {
  std::string("Camera behind the list").copy(devices[10].devname, 30);
  _usbdev_update cards[10] = {};
  std::string("3-11").copy(cards[0].usbslot, 4);
  host.files.write("/etc/config/.usbnosupportlist.dat", "Camera behind the list\n");
  configured(9, "3-11", "").exists(0);
  EXPECT_EQ(sync_usbdev(11, devices, 1, cards), 0);
  EXPECT_NE(key(9, "conflictch"), "999") << "the card got the name of the camera after the list";
}

TEST_F(AListOfElevenNewDevices, OfACountBelowOneIsEmpty) {
  for (const int count : {0, -1, -2147483647 - 1}) EXPECT_EQ(sync_usbdev(count, devices, count, devices), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

// A camera and its card come to a channel that keeps both their names to themselves.
class ACardOfANewCamera : public AStart {
 protected:
  ACardOfANewCamera() {
    configured(3, "3-1", "Camera").profile(1);
    std::string("3-1").copy(device.usbslot, 3);
    std::string("Camera").copy(device.devname, 6);
    device.vnode = 4;
    AStart::camera("3-1", 4, "Camera");
    card = device;
  }

  void plugBoth(const std::string &listed) {
    host.files.write("/etc/config/.usbnosupportlist.dat", listed + "\n");
    EXPECT_EQ(sync_usbdev(1, &device, 1, &card), 0);
  }
  long marks() const {
    const Lines writes = host.config.writes();
    return std::count(writes.begin(), writes.end(), "ch3/conflictch=999");
  }

  _usbdev_update device = {};
  _usbdev_update card = {};
};

TEST_F(ACardOfANewCamera, WithoutANameIsPluggedUnderTheCamerasName) {
  card.devname[0] = '\0';
  plugBoth("Camera");
  EXPECT_EQ(marks(), 2) << "once for each of the two";
}

TEST_F(ACardOfANewCamera, InAnotherPortHasNoName) {
  card.devname[0] = '\0';
  card.usbslot[2] = '2';
  configured(4, "3-2", "Other").profile(2);
  plugBoth("Camera");
  EXPECT_EQ(key(4, "conflictch"), "(none)");
}

TEST_F(ACardOfANewCamera, IsPluggedUnderItsOwnName) {
  std::strcpy(card.devname, "USB Audio");
  plugBoth("USB Audio");
  EXPECT_EQ(marks(), 1);
}

TEST_F(ACardOfANewCamera, OfOneCharacterIsAName) {
  std::strcpy(card.devname, "U");
  plugBoth("U");
  EXPECT_EQ(marks(), 1);
}

TEST_F(AStart, PlugsNewCamerasBeforeNewCards) {
  camera("3-1", 4, "Camera");
  card("3-1", 1, "USB Audio");
  mn_sync_usbdev_conf();
  EXPECT_THAT(host.journal.only({"card"}), ElementsAre("card 1", "card 1")) << "by the scan, then by the handler";
  EXPECT_EQ(key(0, "exists"), "1");
  EXPECT_EQ(key(1, "slot_switch"), "(none)") << "the card has gone to its camera's channel";
}

TEST_F(AStart, SucceedsWithNothingToRead) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(vl_set_devpf_list(), 0);
  EXPECT_EQ(output.text(), openFailure(-3) + openFailure(-3));
}

TEST_F(AStart, TakesWhatWasNeverStoredAsItsDefault) {
  host.channel(2).exists(1).slot("3-1").name("Camera");
  host.channel(2).set("hlspath", "live").set("sharelink/hash_string", "shared");
  camera("3-1", 4, "Camera");
  mn_sync_usbdev_conf();
  EXPECT_EQ(key(2, "slot_switch"), "1");
  EXPECT_THAT(host.journal.only({"exec"}), IsEmpty()) << "no profile, no link";
}

}  // namespace
}  // namespace contract
