// A profile is bound to a camera, asked about, renamed and cleared.
#include <arpa/inet.h>

#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;

constexpr char kUuidCommand[] = "/bin/cat /proc/sys/kernel/random/uuid";
constexpr char kHash[] = "1b4e28ba2fa111d2883f0016d3cca427";
const std::string kRoot = "/mnt/ext/opt/apps/Velmora2/";

class AProfile : public ContractTest {
 protected:
  AProfile() {
    host.commands.prints(kUuidCommand, "1b4e28ba-2fa1-11d2-883f-0016d3cca427\n");
    host.chance.random = 4711;
    camera(3, "3-1.2", 5).name("HD Webcam");
  }

  HostChannel camera(int channel, const std::string &slot, int vnode) {
    return host.channel(channel).exists(1).slot(slot).vnode(vnode);
  }

  int assign(const std::string &slot, int profile) {
    std::string text = slot;
    return vl_set_usbchn_profile(text.data(), profile);
  }

  std::string mark(int channel) { return host.channel(channel).get("conflictch"); }
};

// --- binding ---

TEST_F(AProfile, IsBoundWithItsTimeTagAndLink) {
  host.commands.allowInsideCriticalSection();  // the link command
  EXPECT_EQ(assign("3-1.2", 2), 0);
  EXPECT_EQ(host.channel(3).get("profile"), "2");
  EXPECT_EQ(host.channel(3).get("vtag"), "00004711");
  EXPECT_EQ(host.channel(3).get("hlspath"), kHash);
  EXPECT_THAT(host.channel(3).get("createtime"), MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}"));
}

TEST_F(AProfile, IsLinkedToTheDirectoryOfItsNumberPlusOne) {
  host.commands.allowInsideCriticalSection();
  assign("3-1.2", 2);
  EXPECT_THAT(host.journal.only({"exec"}),
              ElementsAre("exec /bin/ln -sf " + kRoot + "hls/channel3 " + kRoot + std::string(kHash)));
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

TEST_F(AProfile, HeldByTheSameDeviceIsLeftAsItIs) {
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

TEST_F(AProfile, HeldByADeviceThatIsGoneIsFree) {
  host.commands.allowInsideCriticalSection();
  camera(0, "1-1", 0).profile(2).exists(0);
  EXPECT_EQ(assign("3-1.2", 2), 0);
}

TEST_F(AProfile, ForADeviceThatHasAnotherIsRefused) {
  host.channel(3).profile(1);
  EXPECT_EQ(assign("3-1.2", 2), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AProfile, ForAnUnknownSlotIsRefusedBeforeAnyCommand) {
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

TEST_F(AProfile, ParksEveryAttachedCameraThatConflicts) {
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

TEST_F(AProfile, ParksACameraOnTheSameBridge) {
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

TEST_F(AProfile, IsWrittenInOnePassAfterOneReadPass) {
  host.commands.allowInsideCriticalSection();
  assign("3-1.2", 2);
  EXPECT_EQ(host.journal.count("open r"), 1);
  EXPECT_EQ(host.journal.count("open w"), 1);
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

TEST_F(AProfile, ForADeviceThatNoChannelHoldsIsAllowedAndNothingIsSaid) {
  int unassigned = 7;
  EXPECT_EQ(vl_chk_usbdev_profile("9-9", 2, &unassigned), 0);
  EXPECT_EQ(unassigned, 7);
}

// --- renaming ---

TEST_F(AProfile, IsRenamedAndLogged) {
  host.channel(3).profile(2).profileName("old");
  EXPECT_EQ(vl_set_profile_channelname(2, "Front door", 0), 0);
  EXPECT_EQ(host.channel(3).get("profilename"), "Front door");
  EXPECT_EQ(host.journal.lines().back(), "log 0 Modified Channel 3 channel name: Front door");
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

// --- clearing ---

class ABoundProfile : public AProfile {
 protected:
  ABoundProfile() { host.channel(3).profile(2).set("hlspath", "live").set("sharelink/hash_string", "shared").anode(4); }

  void linkOnDisk(const std::string &name) { host.files.link(kRoot + name, kRoot + "gone"); }
};

TEST_F(ABoundProfile, ClearedIsResetWithItsSharing) {
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch3/profile=-1",
                          "ch3/createtime=", "ch3/profilename=", "ch3/hlspath=", "ch3/vtag=", "ch3/video/spsstate=0",
                          "ch3/sharelink/shrenable=0", "ch3/sharelink/pwdenable=0", "ch3/sharelink/shrpwd=",
                          "ch3/sharelink/ssid=", "ch3/sharelink/token=", "ch3/sharelink/hash_string="));
}

TEST_F(ABoundProfile, ClearedLosesTheShareLinkFirstThenTheLiveLinkThenItsKeys) {
  linkOnDisk("shared");
  linkOnDisk("live");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec", "open"}),
              ElementsAre("open r", "open r", "exec /bin/rm -rf " + kRoot + "shared",
                          "exec /bin/rm -rf " + kRoot + "live", "open w", "open r", "open w"));
}

TEST_F(ABoundProfile, ClearedWithoutLinksOnDiskRemovesNothingAndStillNotifies) {
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec"}), IsEmpty());
  EXPECT_EQ(host.network.datagrams().size(), 1U);
}

TEST_F(ABoundProfile, ClearedTellsTheManagerWhoAskedAndWhy) {
  EXPECT_EQ(vl_clear_usbchn_profile(2, "192.168.1.9", 7), 0);
  ASSERT_EQ(host.network.datagrams().size(), 1U);
  const Datagram sent = host.network.datagrams()[0];
  const in_addr_t client = inet_addr("192.168.1.9");
  EXPECT_EQ(sent.bytes.substr(0, 16), "ORDA_VLM2_CFCG_N");
  EXPECT_EQ(sent.bytes.substr(16, 4), std::string(4, '\0'));
  EXPECT_EQ(std::memcmp(sent.bytes.data() + 20, &client, 4), 0);
  EXPECT_EQ(sent.bytes.substr(24, 8), std::string(8, '\0'));
  EXPECT_EQ(sent.word(32), 2);
  EXPECT_EQ(sent.word(36), 5);
  EXPECT_EQ(sent.word(40), 4);
  EXPECT_EQ(sent.word(44), 0);
  EXPECT_EQ(sent.word(48), 7);
  EXPECT_EQ(sent.word(52), -1);
}

TEST_F(ABoundProfile, ClearedHandsOverWithTheEventCodeAsTheMode) {
  camera(6, "3-1.4", 6).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(host.network.datagrams()[0].word(52), 1) << "the successor's profile";
}

TEST_F(ABoundProfile, ClearedWithACodeThatIsNoHandOverModeOnlyReleases) {
  camera(6, "3-1.4", 6).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  vl_clear_usbchn_profile(2, nullptr, 3);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(mark(3), "(none)");
  EXPECT_EQ(host.network.datagrams()[0].word(52), -1);
}

TEST_F(ABoundProfile, WhoseSendFailsIsClearedAllTheSame) {
  host.network.failSends();
  OutputCapture output;
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
}

TEST_F(ABoundProfile, WhoseWriteOpenFailsHasLostItsLinksAlready) {
  linkOnDisk("live");
  host.config.failWriteOpens(-5);
  OutputCapture output;
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), -1);
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre("exec /bin/rm -rf " + kRoot + "live"));
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AProfile, ThatNoChannelHoldsIsNotCleared) {
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
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
