// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which of the devices that the drivers list are known, and which are new.
#include <string>

#include "encoding_host.h"
#include "start_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class AScan : public AStart {
 protected:
  AScan() {
    for (int i = 0; i < 10; ++i) {
      channels[i] = {};
      channels[i].vnode = channels[i].anode = channels[i].state = channels[i].profile = -1;
      map[i] = -1;
    }
  }

  int scanCameras() { return get_conf_chinfo(channels, map, &camera_count, cameras); }
  int scanCards() { return get_conf_audioinfo(channels, map, &card_count, cards, camera_count, cameras); }

  _usbdev_update channels[10];
  _usbdev_update cameras[10] = {};
  _usbdev_update cards[10] = {};
  int map[10];
  int camera_count = 0;
  int card_count = 0;
};

TEST_F(AScan, MarksAPresentCamera) {
  configured(2, "3-1", "Camera");
  camera("3-1", 4, "Camera");
  EXPECT_EQ(scanCameras(), 0);
  EXPECT_EQ(map[2], 1);
  EXPECT_EQ(channels[2].vnode, 4);
  EXPECT_STREQ(channels[2].usbslot, "3-1");
  EXPECT_STREQ(channels[2].devname, "Camera");
  EXPECT_EQ(camera_count, 0);
}

TEST_F(AScan, MarksAPortThatHasAnotherCamera) {
  configured(2, "3-1", "Old");
  configured(3, "3-1", "Older").exists(0);
  camera("3-1", 4, "New");
  scanCameras();
  EXPECT_EQ(map[2], 0);
  EXPECT_EQ(map[3], -1) << "only an attached channel is marked";
  EXPECT_EQ(camera_count, 1);
}

TEST_F(AScan, MarksASecondClaimToOneCamera) {
  configured(2, "3-1", "Camera");
  configured(5, "3-1", "Camera");
  channels[5].vnode = 4;
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(map[2], 1);
  EXPECT_EQ(map[5], 0);
  EXPECT_EQ(channels[5].vnode, -1);
}

TEST_F(AScan, KeepsAnUnsupportedCameraUnsupportedWithoutEncoding) {
  configured(2, "3-1", "Camera").conflict(999);
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(map[2], 999);
}

TEST_F(AScan, ForgetsAnUnsupportedMarkWhereTheHostEncodes) {
  allowEncoding(host);
  configured(2, "3-1", "Camera").conflict(999);
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(map[2], 0);
}

TEST_F(AScan, RecomputesACameraThatWasAbsentWhateverItsMark) {
  configured(2, "3-1", "Camera").exists(0).conflict(999);
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(map[2], 1);
}

TEST_F(AScan, AsksForTheEncodingPermissionOnce) {
  camera("3-1", 4, "Camera");
  camera("3-2", 5, "Camera");
  scanCameras();
  EXPECT_EQ(host.journal.count(
                "popen /sbin/readcfg \"Halvane\" \"Install_Path\" -c -d READCFG_FAILD -f /etc/config/bndl.conf"),
            1);
}

TEST_F(AScan, TakesAnInterfaceOfUpTo255Bytes) {
  const auto asking_for = [](const std::string &interface) {
    return "/bin/ls /sys/bus/usb/drivers/uvcvideo/" + interface + "/video4linux | /bin/awk '{print $1}'";
  };
  const std::string fits = "3-1:" + std::string(251, '1');
  host.commands.prints(kCameraList, fits + "\n");
  scanCameras();
  EXPECT_THAT(host.journal.commands(), Contains(asking_for(fits)));
  host.commands.prints(kCameraList, fits + "2\n");
  host.journal.clear();
  scanCameras();
  EXPECT_THAT(host.journal.commands(), Contains(asking_for(fits)));
  EXPECT_THAT(host.journal.commands(), Contains(asking_for("2")));
}

TEST_F(AScan, WhoseListCannotStartPrintsAMessageAndSucceeds) {
  host.commands.cannotStart(kCameraList);
  host.commands.cannotStart(kCardList);
  OutputCapture output;
  EXPECT_EQ(scanCameras(), 0);
  EXPECT_EQ(scanCards(), 0);
  EXPECT_EQ(output.text(), "cannot find video list ...\ncannot find audio list ...\n");
}

TEST_F(AStart, SkipsDevicesBeyondTheTenth) {
  _usbdev_update channels[10] = {};
  _usbdev_update cameras[10] = {};
  int map[10] = {};
  int count = 0;
  for (int i = 0; i < 11; ++i) camera("3-" + std::to_string(i + 1), i % 10, "Camera");
  EXPECT_EQ(get_conf_chinfo(channels, map, &count, cameras), 0);
  EXPECT_EQ(count, 10);
}

TEST_F(AStart, SkipsAPortWhoseNameIsTooLong) {
  for (const size_t length : {127U, 128U}) {
    _usbdev_update channels[10] = {};
    _usbdev_update cameras[10] = {};
    int map[10] = {};
    int count = 0;
    AStart::camera(std::string(length, '1'), 4, "Camera");
    get_conf_chinfo(channels, map, &count, cameras);
    EXPECT_EQ(count, 1) << "the one of 127 bytes alone";
    EXPECT_EQ(cameras[0].usbslot, std::string(127, '1'));
    EXPECT_STREQ(cameras[0].devname, "Camera");
  }
  EXPECT_THAT(host.journal.commands(), Not(Contains(testing::HasSubstr(std::string(128, '1')))));
}

// --- sound cards ---

TEST_F(AScan, TakesACardFromItsChannelByTheCamerasName) {
  configured(2, "3-1", "Camera").anode(1);
  camera("3-1", 4, "Camera");
  card("3-1", 1, "USB Audio");
  scanCameras();
  channels[2].anode = 1;
  EXPECT_EQ(scanCards(), 0);
  EXPECT_EQ(channels[2].anode, -1);
  EXPECT_EQ(card_count, 0) << "the camera and its microphone share a port and a name";
}

TEST_F(AScan, TakesACardFromTheFirstAndTheLastChannelToo) {
  for (const int channel : {0, 9}) {
    const std::string slot = "3-" + std::to_string(channel + 1);
    configured(channel, slot, "Camera");
    camera(slot, channel, "Camera");
    card(slot, 1, "USB Audio");
    scanCameras();
    channels[channel].anode = 1;
    scanCards();
    EXPECT_EQ(channels[channel].anode, -1);
  }
  EXPECT_EQ(card_count, 0);
}

TEST_F(AScan, ListsAnUnknownCardAsNew) {
  card("3-1", 1, "USB Audio");
  scanCards();
  ASSERT_EQ(card_count, 1);
  EXPECT_EQ(cards[0].anode, 1);
  EXPECT_EQ(cards[0].state, 1);
  EXPECT_STREQ(cards[0].usbslot, "3-1");
  EXPECT_STREQ(cards[0].devname, "USB Audio");
}

TEST_F(AScan, ListsACardThatTheHostCannotDescribeWithoutAName) {
  card("3-1", 1, "USB Audio");
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/3-1:1.2/sound | /bin/awk '{print $1}'", "card9\n");
  scanCards();
  ASSERT_EQ(card_count, 1);
  EXPECT_EQ(cards[0].anode, 9);
  EXPECT_STREQ(cards[0].devname, "");
}

TEST_F(AScan, GivesACardThatTheHostCannotDescribeNoNameOfAnotherOne) {
  card("3-1", 1, "USB Audio");
  card("3-2", 2, "Other Audio");
  host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/3-2:1.2/sound | /bin/awk '{print $1}'", "card9\n");
  scanCards();
  ASSERT_EQ(card_count, 2);
  EXPECT_STREQ(cards[1].devname, "");
}

TEST_F(AScan, NamesTheCardOfANewCameraAfterIt) {
  camera("3-1", 4, "Camera");
  card("3-1", 1, "USB Audio");
  scanCameras();
  scanCards();
  ASSERT_EQ(card_count, 1);
  EXPECT_STREQ(cards[0].devname, "Camera");
}

TEST_F(AScan, NeverListsACardWhoseOwnNameBeginsWithKAB) {
  camera("3-1", 4, "Camera");
  card("3-1", 1, "KAB9");
  scanCameras();
  scanCards();
  EXPECT_EQ(card_count, 0);
}

TEST_F(AScan, TakesTheProfileOfAChannelStoredAsKAB) {
  configured(2, "3-1", "KAB9").profile(1);
  channels[2].profile = 1;
  channels[2].anode = 1;
  card("5-1", 1, "USB Audio");
  scanCards();
  EXPECT_EQ(channels[2].profile, -1);
  EXPECT_EQ(channels[2].anode, -1);
}

TEST_F(AScan, OfCardsNeedsNoListOfCamerasWithoutNewOnes) {
  card("3-1", 1, "USB Audio");
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, cards, 0, nullptr), 0);
  EXPECT_EQ(card_count, 1);
}

TEST_F(AScan, OfCardsTakesTheNameOfTheNewCameraInThePort) {
  camera("3-1", 4, "First");
  camera("3-2", 5, "Second");
  scanCameras();
  card("3-2", 1, "USB Audio");
  scanCards();
  ASSERT_EQ(card_count, 1);
  EXPECT_STREQ(cards[0].devname, "Second");
}

TEST_F(AScan, OfCardsTakesANegativeCountOfNewCamerasAsZero) {
  card("3-1", 1, "USB Audio");
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, cards, -1, nullptr), 0);
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, cards, -2147483647 - 1, cameras), 0);
  EXPECT_EQ(card_count, 2);
}

TEST_F(AScan, OfCardsReadsNoNewCameraAfterTheTenth) {
  _usbdev_update eleven[11] = {};
  std::string("3-1").copy(eleven[10].usbslot, 3);
  std::string("KAB").copy(eleven[10].devname, 3);
  card("3-1", 1, "USB Audio");
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, cards, 11, eleven), 0);
  EXPECT_EQ(card_count, 1);
  EXPECT_STREQ(cards[0].devname, "USB Audio");
}

TEST_F(AScan, AddsNothingToAListOfANegativeCount) {
  camera("3-1", 4, "Camera");
  card("5-1", 1, "USB Audio");
  for (const int count : {-1, -2147483647 - 1}) {
    camera_count = card_count = count;
    EXPECT_EQ(scanCameras(), 0);
    EXPECT_EQ(scanCards(), 0);
    EXPECT_EQ(camera_count, count);
    EXPECT_EQ(card_count, count);
  }
  EXPECT_STREQ(cameras[0].usbslot, "");
  EXPECT_STREQ(cards[0].usbslot, "");
}

TEST_F(AScan, OfCardsTakesTheFirstNameOfAPortThatMatches) {
  configured(2, "3-1", "Other").anode(1);
  configured(3, "3-1", "USB Audio").anode(1);
  channels[2].anode = channels[3].anode = 1;
  card("3-1", 1, "USB Audio");
  EXPECT_EQ(scanCards(), 0);
  EXPECT_EQ(card_count, 0);
  EXPECT_EQ(channels[2].anode, -1);
  EXPECT_EQ(channels[3].anode, -1);
}

TEST_F(AScan, OfCardsListsOneWhosePortIsKnownUnderOtherNamesOnly) {
  configured(2, "3-1", "KAB9");
  configured(3, "3-1", "Other");
  card("3-1", 1, "USB Audio");
  scanCards();
  EXPECT_EQ(card_count, 1);
}

TEST_F(AScan, LeavesTheConflictMapOfCards) {
  configured(2, "3-1", "USB Audio");
  card("3-1", 1, "USB Audio");
  scanCards();
  EXPECT_THAT(map, Each(-1));
}

TEST_F(AScan, SkipsADisplacedChannelsStateButNotItsPort) {
  configured(2, "3-1", "Camera").exists(-1);
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(channels[2].vnode, 4);
  EXPECT_EQ(channels[2].state, -1);
  EXPECT_EQ(map[2], 1);
}

TEST_F(AScan, RaisesTheStateOfEveryConfiguredChannelOnceADeviceIsListed) {
  configured(0, "3-1", "Camera").exists(0);
  configured(9, "9-1", "Far").exists(0);
  scanCameras();
  EXPECT_EQ(channels[0].state, -1);
  camera("3-1", 4, "Camera");
  scanCameras();
  EXPECT_EQ(channels[0].state, 1);
  EXPECT_EQ(channels[9].state, 1);
  EXPECT_EQ(channels[1].state, -1) << "never configured";
  for (_usbdev_update &record : channels) record.state = -1;
  card("5-1", 1, "USB Audio");
  scanCards();
  EXPECT_EQ(channels[9].state, 1);
}

TEST_F(AScan, AddsToTheDevicesThatAreListedAlready) {
  camera("3-1", 4, "Camera");
  card("5-1", 1, "USB Audio");
  camera_count = 9;
  card_count = 9;
  scanCameras();
  scanCards();
  EXPECT_EQ(camera_count, 10);
  EXPECT_EQ(card_count, 10);
  EXPECT_STREQ(cameras[9].usbslot, "3-1");
  EXPECT_EQ(cameras[9].state, 1);
  EXPECT_STREQ(cards[9].usbslot, "5-1");
  scanCameras();
  scanCards();
  EXPECT_EQ(camera_count, 10) << "the list is full";
  EXPECT_EQ(card_count, 10);
}

TEST_F(AScan, SkipsACameraWhoseNameCannotBeRead) {
  camera("3-1", 4, "Camera");
  camera("3-2", 5, "Other");
  host.files.makeUnreadable("/sys/class/video4linux/video4/name");
  OutputCapture output;
  EXPECT_EQ(scanCameras(), 0);
  EXPECT_EQ(output.text(), "open:[/sys/class/video4linux/video4/name] failed\n");
  ASSERT_EQ(camera_count, 1);
  EXPECT_STREQ(cameras[0].usbslot, "3-2");
}

TEST_F(AScan, AsksForNoInterfaceThatTheShellWouldReadOtherwise) {
  host.commands.prints(kCameraList, "$(reboot):1.0\n3-1;reboot:1.0\n-reboot:1.0\n");
  host.commands.prints(kCardList, "`reboot`:1.0\n");
  scanCameras();
  scanCards();
  EXPECT_THAT(host.journal.commands(), Each(Not(HasSubstr("reboot"))));
  EXPECT_EQ(camera_count + card_count, 0);
}

TEST_F(AScan, OfAFileThatCannotBeReadFailsAndRunsNothing) {
  host.config.failReadOpens(-2);
  OutputCapture output;
  EXPECT_EQ(scanCameras(), -1);
  EXPECT_EQ(scanCards(), -1);
  EXPECT_EQ(output.text(), openFailure(-2) + openFailure(-2));
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AScan, WithoutAPlaceForWhatItFindsFails) {
  EXPECT_EQ(get_conf_chinfo(nullptr, map, &camera_count, cameras), -1);
  EXPECT_EQ(get_conf_chinfo(channels, nullptr, &camera_count, cameras), -1);
  EXPECT_EQ(get_conf_chinfo(channels, map, nullptr, cameras), -1);
  EXPECT_EQ(get_conf_chinfo(channels, map, &camera_count, nullptr), -1);
  EXPECT_EQ(get_conf_audioinfo(nullptr, map, &card_count, cards, 0, cameras), -1);
  EXPECT_EQ(get_conf_audioinfo(channels, nullptr, &card_count, cards, 0, cameras), -1);
  EXPECT_EQ(get_conf_audioinfo(channels, map, nullptr, cards, 0, cameras), -1);
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, nullptr, 0, cameras), -1);
  EXPECT_EQ(get_conf_audioinfo(channels, map, &card_count, cards, 1, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
