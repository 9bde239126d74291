// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Who may see a live stream.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Channel 6 serves profile 2, shared and working.
class AViewer : public ContractTest {
 protected:
  AViewer() {
    host.channel(6).profile(2).exists(1).vnode(0).set("sharelink/shrenable", 1);
    host.channel(6).set("sharelink/ssid", "12345678").set("sharelink/token", "token");
  }
  // The code for a viewer with share id and token; the result must agree with it.
  int enter(const std::string &ssid = "12345678", const std::string &token = "token") {
    int code = -77;
    const int result = vl_ssid_auth(ssid.c_str(), token.c_str(), &profile, &code);
    EXPECT_EQ(result, code == -1 ? 0 : -1);
    return code;
  }
  // The code for the application's own live view.
  int view(int id = 2) {
    int code = -77;
    const int result = vl_validate_chliveview(id, &code);
    EXPECT_EQ(result, code == -1 ? 0 : -1);
    return code;
  }

  int profile = -77;
};

TEST_F(AViewer, WithShareIdAndTokenIsLetIn) {
  EXPECT_EQ(enter(), -1);
  EXPECT_EQ(profile, 2);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AViewer, OfTheHostIsLetIn) { EXPECT_EQ(view(), -1); }

TEST_F(AViewer, OfAnUnpluggedDeviceGetsThatCode) {
  host.channel(6).exists(0);
  EXPECT_EQ(view(), 9001);
  EXPECT_EQ(enter(), 9001);
}

TEST_F(AViewer, OfAChannelThatWasNeverUsedGetsTheCodeOfAnUnpluggedDevice) {
  host.config.erase("ch6/exists");
  EXPECT_EQ(view(), 9001);
  EXPECT_EQ(enter(), 9001);
}

class AConflict : public AViewer, public testing::WithParamInterface<int> {};

TEST_P(AConflict, IsReportedToTheViewer) {
  host.channel(6).conflict(GetParam());
  EXPECT_EQ(view(), 9007);
  EXPECT_EQ(enter(), 9007);
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AConflict, testing::Values(0, 9, 999, -2));

TEST_F(AViewer, OfAnActiveChannelIsLetIn) {
  host.channel(6).conflict(-1).slotSwitch(1);
  EXPECT_EQ(view(), -1);
  EXPECT_EQ(enter(), -1);
}

TEST_F(AViewer, OfASwitchedOffPortGetsThatCode) {
  host.channel(6).slotSwitch(0);
  EXPECT_EQ(view(), 9009);
  EXPECT_EQ(enter(), 9009);
}

TEST_F(AViewer, OfADeviceWithoutAnyNodeGetsThatCode) {
  host.channel(6).vnode(-1);
  EXPECT_EQ(view(), 9003);
  EXPECT_EQ(enter(), 9003);
}

TEST_F(AViewer, OfASoundCardGetsTheCodeOfSoundOnly) {
  host.channel(6).vnode(-1).anode(0);
  EXPECT_EQ(view(), 9004);
  EXPECT_EQ(enter(), 9004);
}

TEST_F(AViewer, OfAVideoNodeIsLetInWithAnAudioNodeToo) {
  host.channel(6).anode(1);
  EXPECT_EQ(view(), -1);
  EXPECT_EQ(enter(), -1);
}

TEST_F(AViewer, GetsTheFirstReasonOfSeveral) {
  host.channel(6).exists(0).conflict(3).slotSwitch(0).vnode(-1).set("sharelink/shrenable", 0);
  EXPECT_EQ(enter("12345678", "wrong"), 9001);
  host.channel(6).exists(1);
  EXPECT_EQ(enter("12345678", "wrong"), 9007);
  host.channel(6).conflict(-1);
  EXPECT_EQ(enter("12345678", "wrong"), 9009);
  host.channel(6).slotSwitch(1);
  EXPECT_EQ(enter("12345678", "wrong"), 9003);
  host.channel(6).vnode(0);
  EXPECT_EQ(enter("12345678", "wrong"), 9010);
  host.channel(6).set("sharelink/shrenable", 1);
  EXPECT_EQ(enter("12345678", "wrong"), 9000);
}

TEST_F(AViewer, OfTheHostNeedsNoShareLink) {
  host.channel(6).set("sharelink/shrenable", 0);
  EXPECT_EQ(view(), -1);
}

class AWrongToken : public AViewer, public testing::WithParamInterface<const char *> {};

TEST_P(AWrongToken, IsRefused) {
  EXPECT_EQ(enter("12345678", GetParam()), 9000);
  EXPECT_EQ(profile, 2);
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AWrongToken, testing::Values("", "toke", "tokens", "TOKEN"));

TEST_F(AViewer, NeedsNoPassword) {
  host.channel(6).set("sharelink/pwdenable", 1).set("sharelink/shrpwd", "secret");
  EXPECT_EQ(enter(), -1);
}

TEST_F(AViewer, WithAnUnknownShareIdGetsThatCode) {
  EXPECT_EQ(enter("1234567"), 9011);
  EXPECT_EQ(profile, -1);
}

TEST_F(AViewer, WithAnUnknownShareIdGetsTheLastChannelsProfile) {
  host.channel(9).profile(3);
  EXPECT_EQ(enter("x"), 9011);
  EXPECT_EQ(profile, 3);
}

TEST_F(AViewer, GetsTheFirstChannelWithTheShareId) {
  host.channel(2).profile(0).exists(1).slotSwitch(0).set("sharelink/ssid", "12345678");
  EXPECT_EQ(enter(), 9009);
  EXPECT_EQ(profile, 0);
}

TEST_F(AViewer, IsNeverLetIntoAChannelWithoutAProfile) {
  host.channel(2).exists(0).set("sharelink/ssid", "12345678");
  EXPECT_EQ(enter(), -1);
  EXPECT_EQ(profile, 2);
}

TEST_F(AViewer, WithoutAShareIdGetsAProfileThatIsNotShared) {
  host.channel(2).profile(1).exists(1).vnode(0);
  EXPECT_EQ(enter("", ""), 9010);
  EXPECT_EQ(profile, 1);
}

TEST_F(AViewer, HasTheStoredShareIdComparedByItsFirstFifteenCharacters) {
  host.channel(6).set("sharelink/ssid", "1234567890123456");
  EXPECT_EQ(enter("123456789012345"), -1);
  EXPECT_EQ(enter("1234567890123456"), 9011);
}

TEST_F(AViewer, GetsTheCodeOfNoVideoWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(enter(), 9003);
  EXPECT_EQ(profile, -77);
  EXPECT_EQ(output.text(), openFailure(-3));
}

TEST_F(AViewer, OfTheHostGetsItTooWhenTheFileCannotBeOpenedAfterTheMapping) {
  host.config.failOpenNumber(2, -3);
  OutputCapture output;
  EXPECT_EQ(view(), 9003);
  EXPECT_EQ(output.text(), openFailure(-3));
}

TEST_F(AViewer, OfTheHostGetsNoCodeWhenTheMappingCannotBeRead) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  int code = -77;
  EXPECT_EQ(vl_validate_chliveview(2, &code), -1);
  EXPECT_EQ(code, -77);
  EXPECT_EQ(output.text(), openFailure(-3));
}

TEST_F(AViewer, OfAProfileWithoutAChannelGetsNoCode) {
  int code = -77;
  for (const int id : {0, -1, 4}) EXPECT_EQ(vl_validate_chliveview(id, &code), -1);
  EXPECT_EQ(code, -77);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AViewer, IsRefusedWithoutItsArguments) {
  int code = -77;
  EXPECT_EQ(vl_ssid_auth(nullptr, "token", &profile, &code), -1);
  EXPECT_EQ(vl_ssid_auth("12345678", nullptr, &profile, &code), -1);
  EXPECT_EQ(vl_ssid_auth("12345678", "token", nullptr, &code), -1);
  EXPECT_EQ(vl_ssid_auth("12345678", "token", &profile, nullptr), -1);
  EXPECT_EQ(vl_validate_chliveview(2, nullptr), -1);
  EXPECT_EQ(vl_check_share_link_ssid(nullptr), -1);
  EXPECT_EQ(code, -77);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(AViewer, HasTheShareIdCheckedForItsProfile) {
  EXPECT_EQ(vl_check_share_link_ssid("12345678"), 2);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(AViewer, HasAnUnknownShareIdChecked) {
  EXPECT_EQ(vl_check_share_link_ssid("1234567"), -1);
  EXPECT_EQ(vl_check_share_link_ssid("123456789"), -1);
}

TEST_F(AViewer, HasTheFirstChannelOfThatShareIdChecked) {
  host.channel(2).set("sharelink/ssid", "12345678");
  EXPECT_EQ(vl_check_share_link_ssid("12345678"), -1);
  host.channel(2).profile(0);
  EXPECT_EQ(vl_check_share_link_ssid("12345678"), 0);
}

TEST_F(AViewer, HasTheShareIdOfTheLastChannelChecked) {
  host.channel(9).profile(3).set("sharelink/ssid", "87654321");
  EXPECT_EQ(vl_check_share_link_ssid("87654321"), 3);
}

TEST_F(AViewer, HasALongShareIdCheckedWhole) {
  const std::string ssid(47, '9');
  host.channel(6).set("sharelink/ssid", ssid);
  EXPECT_EQ(vl_check_share_link_ssid(ssid.c_str()), 2);
}

TEST_F(AViewer, HasAnEmptyShareIdCheckedAgainstTheFirstChannelWithoutOne) {
  EXPECT_EQ(vl_check_share_link_ssid(""), -1);
  host.channel(0).profile(3);
  EXPECT_EQ(vl_check_share_link_ssid(""), 3);
}

TEST_F(AViewer, HasNoShareIdCheckedWhenTheFileCannotBeOpened) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(vl_check_share_link_ssid("12345678"), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
}

}  // namespace
}  // namespace contract
