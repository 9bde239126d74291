// Start-up: the channels are brought into line with the devices that are really there.
#include <string>

#include "contract_test.h"
#include "encoding_host.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

constexpr char kCameraList[] = "/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'";
constexpr char kCardList[] = "/bin/ls /sys/bus/usb/drivers/snd-usb-audio | grep \\: | /bin/awk '{print $1}'";
constexpr char kProcessorCommand[] = "/bin/cat /proc/cpuinfo | /bin/grep vendor_id > /tmp/vl_cpu.info";
const std::string kRoot = "/mnt/ext/opt/apps/Velmora2/";

class AStart : public ContractTest {
 protected:
  AStart() { host.commands.allowInsideCriticalSection(); }  // the scans and the record update hold the lock

  // A camera under its driver; its second interface carries no node.
  void camera(const std::string &slot, int node, const std::string &name) {
    cameras_ += slot + ":1.0\n" + slot + ":1.1\n";
    host.commands.prints(kCameraList, cameras_);
    const std::string number = std::to_string(node);
    host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/" + slot + ":1.0/video4linux | /bin/awk '{print $1}'",
                         "video" + number + "\n");
    host.files.write("/sys/class/video4linux/video" + number + "/name", name + "\n");
    host.camera(node, slot).listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
  }

  void card(const std::string &slot, int number, const std::string &name) {
    cards_ += slot + ":1.2\n";
    host.commands.prints(kCardList, cards_);
    host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/" + slot + ":1.2/sound | /bin/awk '{print $1}'",
                         "card" + std::to_string(number) + "\n");
    host.sound.card(number, 1, 1, 1, name);
  }

  HostChannel configured(int number, const std::string &slot, const std::string &name) {
    return host.channel(number).exists(1).slot(slot).name(name);
  }

  std::string key(int number, const std::string &name) { return host.channel(number).get(name); }

 private:
  std::string cameras_;
  std::string cards_;
};

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

TEST_F(AStart, ClearsWhatHungOnAnAbsentChannelWithoutAProfile) {
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
  EXPECT_THAT(host.journal.only({"exec"}),
              ElementsAre("exec /bin/ln -sf " + kRoot + "hls/channel3 " + kRoot + "live",
                          "exec /bin/ln -sf " + kRoot + "hls/channel3 " + kRoot + "shared"));
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
  EXPECT_THAT(host.journal.only({"exec"}),
              ElementsAre("exec /bin/ln -sf " + kRoot + "hls/channel3 " + kRoot + "1b4e28ba2fa111d2883f0016d3cca427"));
}

TEST_F(AStart, CarriesTheSlotSwitchOverToTheNextChannelWithoutOne) {
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

TEST_F(AStart, WithoutAnyStoredSlotSwitchWritesOne) {
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

TEST_F(AStart, PassesOverDevicesBeyondTheTenth) {
  _usbdev_update channels[10] = {};
  _usbdev_update cameras[10] = {};
  int map[10] = {};
  int count = 0;
  for (int i = 0; i < 11; ++i) camera("3-" + std::to_string(i + 1), i % 10, "Camera");
  EXPECT_EQ(get_conf_chinfo(channels, map, &count, cameras), 0);
  EXPECT_EQ(count, 10);
}

TEST_F(AStart, PassesOverAPortWhoseNameIsTooLong) {
  for (const size_t length : {127U, 128U}) {
    _usbdev_update channels[10] = {};
    _usbdev_update cameras[10] = {};
    int map[10] = {};
    int count = 0;
    AStart::camera(std::string(length, '1'), 4, "Camera");
    get_conf_chinfo(channels, map, &count, cameras);
    EXPECT_EQ(count, 1) << "the one of 127 bytes alone";
  }
  EXPECT_THAT(host.journal.commands(), Not(Contains(testing::HasSubstr(std::string(128, '1')))));
}

// --- the conflict map ---

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

TEST_F(AScan, MarksAPortThatHoldsAnotherCamera) {
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

TEST_F(AScan, WhoseListCannotStartSaysSoAndSucceeds) {
  host.commands.cannotStart(kCameraList);
  host.commands.cannotStart(kCardList);
  OutputCapture output;
  EXPECT_EQ(scanCameras(), 0);
  EXPECT_EQ(scanCards(), 0);
  EXPECT_EQ(output.text(), "cannot find video list ...\ncannot find audio list ...\n");
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

TEST_F(AScan, ListsAnUnknownCardAsNew) {
  card("3-1", 1, "USB Audio");
  scanCards();
  ASSERT_EQ(card_count, 1);
  EXPECT_EQ(cards[0].anode, 1);
  EXPECT_EQ(cards[0].state, 1);
  EXPECT_STREQ(cards[0].usbslot, "3-1");
  EXPECT_STREQ(cards[0].devname, "USB Audio");
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

// --- the codec check ---

class ACodecCheck : public AStart {};

TEST_F(ACodecCheck, WritesNothingWhereTheHostEncodes) {
  allowEncoding(host);
  configured(2, "3-1", "Camera").vnode(4).vcodec(0).set("video/cap", "0");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.journal.only({"open"}), IsEmpty());
}

TEST_F(ACodecCheck, MarksACameraWithoutMjpegAndSwitchesTheOthersToIt) {
  configured(2, "3-1", "Raw").vnode(4).vcodec(0).set("video/cap", "0");
  configured(3, "3-2", "Both").vnode(5).vcodec(0).set("video/cap", "0 1");
  configured(4, "3-3", "Gone").exists(0).profile(1).vnode(6).vcodec(0).set("video/cap", "1");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/conflictch=999", "ch3/video/vcodec=1", "ch4/video/vcodec=1"));
}

TEST_F(ACodecCheck, PassesOverChannelsWithoutANodeOrOutOfUse) {
  configured(2, "3-1", "Raw").vnode(-1).set("video/cap", "0");
  configured(3, "3-2", "Raw").exists(0).vnode(5).set("video/cap", "0");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.journal.only({"open"}), ElementsAre("open r")) << "opened for writing only when a channel is marked";
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

TEST_F(AStart, RunsItsLaterStepsWhateverTheEarlierReturned) {
  configured(2, "3-1", "Camera");
  host.config.failOpenNumber(2, -4);
  OutputCapture output;
  EXPECT_EQ(mn_sync_usbdev_conf(), 1);
  EXPECT_EQ(output.text(), openFailure(-4));
  EXPECT_EQ(key(2, "exists"), "0") << "the update has run";
}

TEST_F(AStart, NeedsNoListOfADeviceKindThatBroughtNothingNew) {
  _usbdev_update device = {};
  std::string("3-1").copy(device.usbslot, 3);
  EXPECT_EQ(sync_usbdev(0, nullptr, 0, nullptr), 0);
  EXPECT_EQ(sync_usbdev(1, nullptr, 1, nullptr), 0);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_EQ(sync_usbdev(1, &device, 0, nullptr), 0);
  EXPECT_EQ(key(0, "exists"), "1");
  EXPECT_EQ(sync_usbdev(0, nullptr, 1, &device), 0);
  EXPECT_EQ(key(0, "audio/anode"), "-1");
}

TEST_F(AStart, PlugsACardWithoutANameUnderTheNewCamerasName) {
  _usbdev_update new_camera = {};
  std::string("3-1").copy(new_camera.usbslot, 3);
  std::string("Camera").copy(new_camera.devname, 6);
  new_camera.vnode = 4;
  _usbdev_update new_card = new_camera;
  new_card.devname[0] = '\0';
  new_card.anode = 1;
  host.files.write("/etc/config/.usbnosupportlist.dat", "Camera\n");
  EXPECT_EQ(sync_usbdev(0, &new_camera, 1, &new_card), 0);
  EXPECT_EQ(key(0, "conflictch"), "(none)") << "no new camera counted, so no name to take";
  EXPECT_EQ(sync_usbdev(1, &new_camera, 1, &new_card), 0);
  EXPECT_EQ(key(0, "conflictch"), "999");
}

}  // namespace
}  // namespace contract
