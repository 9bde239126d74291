// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Share links: made, read, renewed and removed.
#include <algorithm>
#include <cstring>
#include <string>

#include "contract_test.h"
#include "stream_links.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Channel 6 serves profile 2.
class AShareLink : public ContractTest {
 protected:
  AShareLink() {
    host.commands.allowInsideCriticalSection();
    host.commands.prints(kUuidCommand, kUuid);
    host.chance.random = 4711;
    host.channel(6).profile(2);
    memset(&info, '#', sizeof info);
    info.profile = 2;
    info.shrenable = 1;
    info.pwdenable = 1;
    strcpy(info.shrpwd, "secret");
  }
  // A link that is there already.
  void stored(const std::string &ssid, const std::string &hash, const std::string &password) {
    host.channel(6).set("sharelink/ssid", ssid).set("sharelink/hash_string", hash).set("sharelink/shrpwd", password);
    host.channel(6).set("sharelink/token", "old-token").set("sharelink/shrenable", 1);
    if (!hash.empty()) host.files.link(kLinkFolder + hash, kLinkFolder + "hls/channel3");
  }
  std::string get(const std::string &key) { return host.channel(6).get("sharelink/" + key); }
  Lines executed() { return host.journal.only({"exec"}); }

  ShareLinkInfo info;
};

class ANewShareLink : public AShareLink {};

TEST_F(ANewShareLink, IsStoredWithItsIdentifiers) {
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch6/sharelink/shrenable=1", "ch6/sharelink/pwdenable=1", "ch6/sharelink/shrpwd=secret",
                          "ch6/sharelink/ssid=00004711", std::string("ch6/sharelink/token=") + kHash,
                          std::string("ch6/sharelink/hash_string=") + kHash));
}

TEST_F(ANewShareLink, IsReturnedToTheCaller) {
  vl_set_share_link(&info);
  EXPECT_STREQ(info.ssid, "00004711");
  EXPECT_STREQ(info.token, kHash);
  EXPECT_STREQ(info.hash_string, kHash);
  EXPECT_EQ(info.profile, 2);
  EXPECT_EQ(info.profilename[0], '#');
}

TEST_F(ANewShareLink, IsReturnedInFieldsThatWereClearedBefore) {
  vl_set_share_link(&info);
  EXPECT_EQ(std::string(info.token, sizeof info.token), kHash + std::string(32, '\0'));
  EXPECT_EQ(std::string(info.hash_string, sizeof info.hash_string), kHash + std::string(32, '\0'));
}

TEST_F(ANewShareLink, HasIdentifiersOfOneTo32Characters) {
  for (const std::size_t length : std::initializer_list<std::size_t>{1, 32, 40}) {
    host.commands.prints(kUuidCommand, std::string(length, 'a') + "\n");
    strcpy(info.shrpwd, std::to_string(length).c_str());  // a new password makes a new link
    EXPECT_EQ(vl_set_share_link(&info), 0);
    EXPECT_EQ(info.token, std::string(std::min<std::size_t>(length, 32), 'a'));
  }
}

TEST_F(ANewShareLink, LeadsToTheDirectoryOfTheProfileNotOfTheChannel) {
  vl_set_share_link(&info);
  EXPECT_THAT(executed(), ElementsAre(linking(3, kHash)));
}

TEST_F(ANewShareLink, HasItsIdentifiersMadeBeforeTheFileIsOpenedForWriting) {
  vl_set_share_link(&info);
  const std::string command = kUuidCommand;
  EXPECT_THAT(host.journal.lines(),
              ElementsAre("open r", "close", "open r", "close", "popen " + command, "pclose " + command,
                          "popen " + command, "pclose " + command, "open w", linking(3, kHash), "close"));
}

TEST_F(ANewShareLink, WhoseIdentifiersCannotBeMadeIsNotStored) {
  host.commands.cannotStart(kUuidCommand);
  EXPECT_EQ(vl_set_share_link(&info), -1);
  EXPECT_THAT(host.journal.only({"open"}), Not(Contains("open w")));
  EXPECT_EQ(info.token[0], '#');
  EXPECT_THAT(executed(), IsEmpty());
}

// The host's random text, when it gives one at the n-th question alone.
void giveOneIdentifier(Host &host, int number) {
  host.commands.prints(kUuidCommand, number == 1 ? kUuid : "");
  host.journal.watch([&host, number](const std::string &line) {
    if (line == std::string("pclose ") + kUuidCommand) host.commands.prints(kUuidCommand, number == 1 ? "" : kUuid);
  });
}

TEST_F(ANewShareLink, IsNotStoredWithATokenAndNoNameNorTheOtherWayRound) {
  for (const int number : {1, 2}) {
    giveOneIdentifier(host, number);
    EXPECT_EQ(vl_set_share_link(&info), -1) << "only identifier " << number << " could be made";
    EXPECT_THAT(host.config.writes(), IsEmpty());
    EXPECT_THAT(executed(), IsEmpty());
  }
}

TEST_F(ANewShareLink, WithAPasswordThatFillsItsFieldIsStoredCut) {
  memset(info.shrpwd, 'p', sizeof info.shrpwd);
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_EQ(get("shrpwd"), std::string(31, 'p'));
}

class ASharedProfile : public AShareLink {
 protected:
  ASharedProfile() { stored("12345678", "old", "secret"); }
};

TEST_F(ASharedProfile, KeepsItsLinkWhenThePasswordIsTheSame) {
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch6/sharelink/shrenable=1", "ch6/sharelink/pwdenable=1", "ch6/sharelink/shrpwd=secret"));
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "open r", "close", "open w", "close"));
}

TEST_F(ASharedProfile, KeepsItsLinkUnderAShareIdOfOneCharacter) {
  stored("7", "old-hash", "secret");
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_EQ(get("token"), "old-token");
}

TEST_F(ASharedProfile, ThatKeepsItsLinkReportsOnlyItsShareId) {
  vl_set_share_link(&info);
  EXPECT_STREQ(info.ssid, "12345678");
  EXPECT_EQ(info.token[0], '#');
  EXPECT_EQ(info.hash_string[0], '#');
}

TEST_F(ASharedProfile, ThatIsNoLongerSharedReportsTheShareIdThatItHad) {
  info.shrenable = 0;
  vl_set_share_link(&info);
  EXPECT_STREQ(info.ssid, "12345678");
  EXPECT_EQ(info.token[0], '#');
  EXPECT_EQ(info.hash_string[0], '#');
}

TEST_F(ASharedProfile, ReportsItsShareIdEvenIfNothingCanBeWritten) {
  OutputCapture output;
  host.config.failWriteOpens(-4);
  strcpy(info.shrpwd, "other");
  EXPECT_EQ(vl_set_share_link(&info), -1);
  EXPECT_STREQ(info.ssid, "12345678");
  EXPECT_EQ(info.token[0], '#');
  EXPECT_EQ(info.hash_string[0], '#');
  EXPECT_THAT(executed(), IsEmpty());
}

TEST_F(ASharedProfile, GetsANewLinkUnderItsOldShareIdWithANewPassword) {
  strcpy(info.shrpwd, "other");
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(
      host.config.writes(),
      ElementsAre("ch6/sharelink/shrenable=1", "ch6/sharelink/pwdenable=1", "ch6/sharelink/shrpwd=other",
                  std::string("ch6/sharelink/token=") + kHash, std::string("ch6/sharelink/hash_string=") + kHash));
  EXPECT_STREQ(info.ssid, "12345678");
  EXPECT_THAT(executed(), ElementsAre(removing("old"), linking(3, kHash)));
}

TEST_F(ASharedProfile, LosesItsOldLinkWhileTheFileIsOpenForWriting) {
  strcpy(info.shrpwd, "other");
  vl_set_share_link(&info);
  const Lines events = host.journal.only({"open", "lstat", "exec", "close"});
  EXPECT_THAT(events, ElementsAre("open r", "close", "open r", "close", "open w", "lstat " + kLinkFolder + "old",
                                  removing("old"), linking(3, kHash), "close"));
}

TEST_F(ASharedProfile, LosesItsIdentifiersWhenSharingEnds) {
  info.shrenable = 0;
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch6/sharelink/shrenable=0", "ch6/sharelink/pwdenable=1", "ch6/sharelink/shrpwd=secret",
                          "ch6/sharelink/ssid=", "ch6/sharelink/token=", "ch6/sharelink/hash_string="));
  EXPECT_THAT(executed(), ElementsAre(removing("old")));
  EXPECT_EQ(host.journal.commands().size(), 0U);
}

TEST_F(ASharedProfile, WhoseLinkIsMissingIsNotRemovedAgain) {
  host.files.remove(kLinkFolder + "old");
  info.shrenable = 0;
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(executed(), IsEmpty());
}

TEST_F(AShareLink, WithoutAStoredNameNeverRemovesAnything) {
  stored("12345678", "", "other");
  info.shrenable = 0;
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_THAT(host.journal.only({"lstat", "exec"}), IsEmpty());
}

TEST_F(AShareLink, WithoutAShareIdIsMadeAgainWithTheSamePasswordToo) {
  stored("", "old", "secret");
  EXPECT_EQ(vl_set_share_link(&info), 0);
  EXPECT_EQ(get("ssid"), "00004711");
  EXPECT_THAT(executed(), ElementsAre(removing("old"), linking(3, kHash)));
}

TEST_F(AShareLink, IsReadWhole) {
  stored("12345678", "old", "word");
  host.channel(6).profileName("Front door").set("sharelink/pwdenable", 1);
  EXPECT_EQ(vl_get_share_link(&info), 0);
  EXPECT_STREQ(info.profilename, "Front door");
  EXPECT_EQ(info.shrenable, 1);
  EXPECT_EQ(info.pwdenable, 1);
  EXPECT_STREQ(info.shrpwd, "word");
  EXPECT_STREQ(info.ssid, "12345678");
  EXPECT_STREQ(info.token, "old-token");
  EXPECT_STREQ(info.hash_string, "old");
}

TEST_F(AShareLink, IsReadIntoFieldsThatWereClearedBefore) {
  stored("1", "2", "3");
  host.channel(6).profileName("4");
  EXPECT_EQ(vl_get_share_link(&info), 0);
  const auto filled = [](const std::string &text, size_t size) { return text + std::string(size - text.size(), '\0'); };
  EXPECT_EQ(std::string(info.ssid, sizeof info.ssid), filled("1", sizeof info.ssid));
  EXPECT_EQ(std::string(info.hash_string, sizeof info.hash_string), filled("2", sizeof info.hash_string));
  EXPECT_EQ(std::string(info.shrpwd, sizeof info.shrpwd), filled("3", sizeof info.shrpwd));
  EXPECT_EQ(std::string(info.token, sizeof info.token), filled("old-token", sizeof info.token));
  EXPECT_EQ(std::string(info.profilename, sizeof info.profilename), filled("4", sizeof info.profilename));
}

TEST_F(AShareLink, ThatIsNotStoredIsReadAsDisabled) {
  EXPECT_EQ(vl_get_share_link(&info), 0);
  EXPECT_EQ(info.shrenable, 0);
  EXPECT_EQ(info.pwdenable, 0);
  EXPECT_STREQ(info.profilename, "");
  EXPECT_STREQ(info.ssid, "");
}

TEST_F(AShareLink, IsReadWithItsTextsCutToTheirFields) {
  stored(std::string(48, 's'), std::string(64, 'h'), std::string(32, 'p'));
  host.channel(6).set("sharelink/token", std::string(64, 't'));
  EXPECT_EQ(vl_get_share_link(&info), 0);
  EXPECT_EQ(info.ssid, std::string(47, 's'));
  EXPECT_EQ(info.hash_string, std::string(63, 'h'));
  EXPECT_EQ(info.shrpwd, std::string(31, 'p'));
  EXPECT_EQ(info.token, std::string(63, 't'));
}

class ARenewedShareLink : public ASharedProfile {};

TEST_F(ARenewedShareLink, HasAllItsIdentifiersReplaced) {
  EXPECT_EQ(vl_renew_share_link(&info), 0);
  EXPECT_THAT(host.config.writes(),
              ElementsAre("ch6/sharelink/ssid=00004711", std::string("ch6/sharelink/token=") + kHash,
                          std::string("ch6/sharelink/hash_string=") + kHash));
  EXPECT_STREQ(info.ssid, "00004711");
  EXPECT_STREQ(info.token, kHash);
  EXPECT_STREQ(info.hash_string, kHash);
}

TEST_F(ARenewedShareLink, LosesItsOldLinkOutsideTheLockAndGetsItsNewOneInside) {
  vl_renew_share_link(&info);
  EXPECT_THAT(host.journal.only({"open", "exec", "close"}),
              ElementsAre("open r", "close", "open r", "close", removing("old"), "open w", linking(3, kHash), "close"));
}

TEST_F(ARenewedShareLink, WhoseIdentifiersCannotBeMadeIsLostAndWhatIsStoredStays) {
  host.commands.cannotStart(kUuidCommand);
  EXPECT_EQ(vl_renew_share_link(&info), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_EQ(get("token"), "old-token");
  EXPECT_THAT(executed(), ElementsAre(removing("old")));
}

TEST_F(ARenewedShareLink, IsMadeForADisabledOneToo) {
  host.channel(6).set("sharelink/shrenable", 0);
  info.shrenable = 0;
  EXPECT_EQ(vl_renew_share_link(&info), 0);
  EXPECT_THAT(executed(), ElementsAre(removing("old"), linking(3, kHash)));
  EXPECT_EQ(get("shrenable"), "0");
}

TEST_F(ARenewedShareLink, IsMadeThoughTheOldOneCouldNotBeRead) {
  OutputCapture output;
  host.config.failOpenNumber(2, -5);
  EXPECT_EQ(vl_renew_share_link(&info), 0);
  EXPECT_EQ(output.text(), openFailure(-5));
  EXPECT_THAT(executed(), ElementsAre(linking(3, kHash)));
}

TEST_F(ASharedProfile, HasALinkOfOneCharacterRemoved) {
  stored("12345678", "a", "secret");
  EXPECT_EQ(remove_hash_link("ch6"), 0);
  EXPECT_THAT(executed(), ElementsAre(removing("a")));
}

TEST_F(ASharedProfile, HasItsLinkRemovedByItsSection) {
  EXPECT_EQ(remove_hash_link("ch6"), 0);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "lstat " + kLinkFolder + "old", removing("old")));
  EXPECT_EQ(get("hash_string"), "old");
}

TEST_F(ASharedProfile, HasItsLinkRemovedByAnySectionThatNamesIt) {
  for (const std::string section : {"door", "ch10", "pf0"}) {
    host.config.set(section + "/sharelink/hash_string", "old");
    EXPECT_EQ(remove_hash_link(section.c_str()), 0);
  }
  EXPECT_THAT(executed(), ElementsAre(removing("old"), removing("old"), removing("old")));
}

TEST_F(ASharedProfile, LosesNothingWithASectionThatNamesNoLink) {
  for (const char *section : {"ch5", "ch", "ch66", "c", "", "%n%s"}) EXPECT_EQ(remove_hash_link(section), 0);
  EXPECT_THAT(executed(), IsEmpty());
  EXPECT_EQ(remove_hash_link(nullptr), -1);
}

using Operation = int (*)(ShareLinkInfo *);

class EveryShareLinkOperation : public ASharedProfile, public testing::WithParamInterface<Operation> {
 protected:
  // The n-th open fails, and nothing is told but a share id that had been read before.
  void failsAtOpen(int number) {
    strcpy(info.shrpwd, "other");
    const ShareLinkInfo before = info;
    OutputCapture output;
    host.config.failOpenNumber(number, -4);
    EXPECT_EQ(GetParam()(&info), -1);
    EXPECT_EQ(output.text(), openFailure(-4));
    if (info.ssid[0] != '#') memcpy(info.ssid, before.ssid, sizeof info.ssid);
    EXPECT_EQ(memcmp(&before, &info, sizeof info), 0);
    EXPECT_THAT(host.config.writes(), IsEmpty());
  }
};

TEST_P(EveryShareLinkOperation, OfAProfileWithoutAChannelFails) {
  info.profile = 1;
  const ShareLinkInfo before = info;
  EXPECT_EQ(GetParam()(&info), -1);
  EXPECT_EQ(memcmp(&before, &info, sizeof info), 0);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_P(EveryShareLinkOperation, OfNoProfileFailsBeforeAnything) {
  for (const int profile : {-1, 4}) {
    info.profile = profile;
    EXPECT_EQ(GetParam()(&info), -1);
  }
  EXPECT_EQ(GetParam()(nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_P(EveryShareLinkOperation, FailsWhenTheMappingCannotBeRead) { failsAtOpen(1); }

INSTANTIATE_TEST_SUITE_P(OfEveryKind, EveryShareLinkOperation,
                         testing::Values(vl_set_share_link, vl_get_share_link, vl_renew_share_link));

class AReadingOrSettingOperation : public EveryShareLinkOperation {};

TEST_P(AReadingOrSettingOperation, FailsWhenItsReadingFails) { failsAtOpen(2); }

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AReadingOrSettingOperation,
                         testing::Values(vl_set_share_link, vl_get_share_link));

class AWritingOperation : public EveryShareLinkOperation {};

TEST_P(AWritingOperation, FailsWhenItsWritingFails) { failsAtOpen(3); }

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AWritingOperation, testing::Values(vl_set_share_link, vl_renew_share_link));

TEST_F(ASharedProfile, KeepsItsLinkWhenTheRemovalCannotRead) {
  host.config.failReadOpens(-3);
  OutputCapture output;
  EXPECT_EQ(remove_hash_link("ch6"), -1);
  EXPECT_EQ(output.text(), openFailure(-3));
  EXPECT_THAT(executed(), IsEmpty());
}

}  // namespace
}  // namespace contract
