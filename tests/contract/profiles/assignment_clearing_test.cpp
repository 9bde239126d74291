// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A profile is cleared.
#include <arpa/inet.h>

#include <cstring>
#include <string>

#include "assignment_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AnAssignedProfile : public AProfile {
 protected:
  AnAssignedProfile() {
    host.channel(3).profile(2).set("hlspath", "live").set("sharelink/hash_string", "shared").anode(4);
  }

  void linkOnDisk(const std::string &name) { host.files.link(kLinkFolder + name, kLinkFolder + "gone"); }
};

TEST_F(AnAssignedProfile, ClearedIsResetWithItsSharing) {
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch3/profile=-1",
                          "ch3/createtime=", "ch3/profilename=", "ch3/hlspath=", "ch3/vtag=", "ch3/video/spsstate=0",
                          "ch3/sharelink/shrenable=0", "ch3/sharelink/pwdenable=0", "ch3/sharelink/shrpwd=",
                          "ch3/sharelink/ssid=", "ch3/sharelink/token=", "ch3/sharelink/hash_string="));
}

TEST_F(AnAssignedProfile, ClearedLosesTheShareLinkFirstThenTheLiveLinkThenItsKeys) {
  linkOnDisk("shared");
  linkOnDisk("live");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec", "open"}),
              ElementsAre("open r", "open r", removing("shared"), removing("live"), "open w", "open r", "open w"));
}

TEST_F(AnAssignedProfile, ClearedRemovesWhateverHasTheNameOfItsLink) {
  host.files.write(kLinkFolder + "live", "no link");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(removing("live")));
}

TEST_F(AnAssignedProfile, WhoseLinksCannotBeRemovedIsClearedNevertheless) {
  linkOnDisk("shared");
  linkOnDisk("live");
  host.commands.programsReturn(1);
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_THAT(host.journal.only({"exec"}), SizeIs(2));
  EXPECT_EQ(host.channel(3).get("profile"), "-1");
}

TEST_F(AnAssignedProfile, ClearedWithoutLinkNamesRemovesNoLink) {
  host.channel(3).set("hlspath", "").set("sharelink/hash_string", "");
  host.files.write(kLinkFolder, "the directory itself");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec"}), IsEmpty());
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

TEST_F(AnAssignedProfile, ClearedWithoutLinksOnDiskRemovesNothingAndStillNotifies) {
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_THAT(host.journal.only({"exec"}), IsEmpty());
  EXPECT_EQ(host.network.datagrams().size(), 1U);
}

TEST_F(AnAssignedProfile, ClearedNotifiesWithTheClientAndTheEventCode) {
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

TEST_F(AnAssignedProfile, ClearedWithoutAClientNotifiesWithoutAnAddress) {
  vl_clear_usbchn_profile(2, nullptr, 4);
  ASSERT_THAT(host.network.datagrams(), SizeIs(1));
  EXPECT_EQ(host.network.datagrams()[0].bytes.substr(16, 16), std::string(16, '\0'));
}

TEST_F(AnAssignedProfile, ClearedWithATextThatIsNotAnAddressNotifiesWithTheResultOfInetAddr) {
  vl_clear_usbchn_profile(2, "somebody", 4);
  EXPECT_EQ(host.network.datagrams().at(0).word(20), -1);
}

TEST_F(AnAssignedProfile, WithoutNodesIsClearedWithMinusOneForEach) {
  host.config.erase("ch3/video/vnode");
  host.config.erase("ch3/audio/anode");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_EQ(host.network.datagrams().at(0).word(36), -1);
  EXPECT_EQ(host.network.datagrams().at(0).word(40), -1);
}

TEST_F(AnAssignedProfile, ThatWaitsIsClearedWithoutAHandOver) {
  host.channel(3).conflict(8);
  camera(6, "3-1.4", 6).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  vl_clear_usbchn_profile(2, nullptr, 4);
  EXPECT_EQ(mark(3), "8");
  EXPECT_EQ(mark(6), "3");
  EXPECT_EQ(host.network.datagrams().at(0).word(52), -1);
}

TEST_F(AnAssignedProfile, ClearedIsNotifiedLastWithTheFileClosed) {
  vl_clear_usbchn_profile(2, nullptr, 4);
  const Lines lines = host.journal.lines();
  EXPECT_EQ(lines.at(lines.size() - 2), "close");
  EXPECT_EQ(lines.back(), "notify event=4 profile=2 video=5 audio=4 flag=0 target=-1");
}

TEST_F(AnAssignedProfile, WhoseHandOverFailsIsClearedAndNotifiedNevertheless) {
  host.config.failOpenNumber(4, -5);
  OutputCapture output;
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_EQ(output.text(), openFailure(-5));
  EXPECT_EQ(host.network.datagrams().at(0).word(52), -1);
}

TEST_F(AnAssignedProfile, ThatCannotBeReadIsNotCleared) {
  linkOnDisk("live");
  for (const int open : {1, 2}) {
    host.config.failOpenNumber(open, -5);
    OutputCapture output;
    EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), -1);
    EXPECT_EQ(output.text(), openFailure(-5));
  }
  EXPECT_THAT(host.journal.only({"exec", "notify"}), IsEmpty());
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AnAssignedProfile, ClearedHandsOverWithTheEventCodeAsTheMode) {
  camera(6, "3-1.4", 6).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(host.network.datagrams()[0].word(52), 1) << "the successor's profile";
}

TEST_F(AnAssignedProfile, ClearedForASuccessorWhoseStoredProfileIs99NotifiesOfNoTarget) {
  camera(6, "3-1.4", 6).profile(99).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(host.network.datagrams()[0].word(52), -1);
}

TEST_F(AnAssignedProfile, ClearedWithACodeThatIsNotAHandOverModeOnlyReleases) {
  camera(6, "3-1.4", 6).profile(1).slotSwitch(1).conflict(3).createTime("2024-03-05 08:15:00");
  vl_clear_usbchn_profile(2, nullptr, 3);
  EXPECT_EQ(mark(6), "-1");
  EXPECT_EQ(mark(3), "(none)");
  EXPECT_EQ(host.network.datagrams()[0].word(52), -1);
}

TEST_F(AnAssignedProfile, WhoseSendFailsIsClearedNevertheless) {
  host.network.failSends();
  OutputCapture output;
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), 0);
}

TEST_F(AnAssignedProfile, WhoseWriteOpenFailsHasLostItsLinksAlready) {
  linkOnDisk("live");
  host.config.failWriteOpens(-5);
  OutputCapture output;
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), -1);
  EXPECT_THAT(host.journal.only({"exec"}), ElementsAre(removing("live")));
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(AProfile, OfNoChannelIsNotCleared) {
  EXPECT_EQ(vl_clear_usbchn_profile(2, nullptr, 4), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

}  // namespace
}  // namespace contract
