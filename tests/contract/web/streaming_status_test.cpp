// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The state of the live streams, and the signals about it.
#include <string>

#include "contract_test.h"
#include "scripted_server.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class APlaylist : public ContractTest {
 protected:
  int status(int profile = 0) {
    int answer = -7;
    EXPECT_EQ(vl_get_hls_status(profile, &answer), 0);
    return answer;
  }
};

TEST_F(APlaylist, IsFoundUnderTheInstallPathInTheDirectoryOfItsProfile) {
  host.package("Velmora2", "Install_Path", "/share/apps/velmora2");
  host.files.write("/share/apps/velmora2/web/hls/channel4/playlist.m3u8", "");
  EXPECT_EQ(status(3), 1);
  EXPECT_EQ(status(0), 0);
}

TEST_F(APlaylist, IsLookedForUnderTheUsualPathWhenThePackageIsUnknown) {
  host.files.write("/share/CACHEDEV1_DATA/.bndl/velmora2/web/hls/channel1/playlist.m3u8", "");
  EXPECT_EQ(status(0), 1);
}

TEST_F(APlaylist, IsLookedForWithOneStat) {
  status(0);
  EXPECT_THAT(host.journal.only({"stat", "lstat", "fopen"}),
              ElementsAre("stat /share/CACHEDEV1_DATA/.bndl/velmora2/web/hls/channel1/playlist.m3u8"));
}

TEST_F(APlaylist, OfAnyProfileIsLookedFor) {
  status(-1);
  status(10);
  EXPECT_THAT(host.journal.only({"stat"}),
              ElementsAre("stat /share/CACHEDEV1_DATA/.bndl/velmora2/web/hls/channel0/playlist.m3u8",
                          "stat /share/CACHEDEV1_DATA/.bndl/velmora2/web/hls/channel11/playlist.m3u8"));
}

TEST_F(APlaylist, IsFoundUnderTheLongestInstallPath) {
  const std::string path = "/share/" + std::string(119, 'p');
  host.package("Velmora2", "Install_Path", path);
  host.files.write(path + "/web/hls/channel1/playlist.m3u8", "");
  EXPECT_EQ(status(0), 1);
}

TEST_F(APlaylist, IsNotSearchedForWithoutAPlaceForTheResult) {
  EXPECT_EQ(vl_get_hls_status(0, nullptr), 0);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

class AStreamSignal : public ContractTest {
 protected:
  AStreamSignal() {
    for (size_t i = 0; i < message.size(); ++i) message[i] = static_cast<char>(i);
  }
  int signal() {
    OutputCapture output;
    const int result = vl_StreamNotify(message.data());
    said = output.text();
    return result;
  }

  std::string message = std::string(40, '\0');
  std::string said;
};

TEST_F(AStreamSignal, IsThirtyTwoBytesForTheStreamingService) {
  ScriptedServer service({Answer{"", Answer::End::close, message.substr(0, 32)}});
  host.network.serve(10170, service.port());
  EXPECT_EQ(signal(), 0);
  EXPECT_THAT(service.requests(), ElementsAre(message.substr(0, 32)));
  EXPECT_THAT(host.journal.lines(), ElementsAre("connect 0.0.0.0:10170"));
  EXPECT_EQ(said, "");
}

TEST_F(AStreamSignal, IsSentAtOnce) {
  ScriptedServer service({Answer{"", Answer::End::close, message.substr(0, 32)}});
  host.network.serve(10170, service.port());
  signal();
  EXPECT_THAT(host.network.sent(), ElementsAre(message.substr(0, 32)));
}

TEST_F(AStreamSignal, WithoutAServiceFails) {
  EXPECT_EQ(signal(), -1);
  EXPECT_EQ(said, "StreamNotify -- Connect Failed.\n");
}

TEST_F(AStreamSignal, WithoutASocketFails) {
  host.network.failSockets();
  EXPECT_EQ(signal(), -1);
  EXPECT_EQ(said, "StreamNotify -- Could not create socket.\n");
}

TEST_F(AStreamSignal, ThatCannotBeSentFails) {
  ScriptedServer service({Answer{"", Answer::End::close, ""}});
  host.network.serve(10170, service.port());
  host.network.breakConnections();
  EXPECT_EQ(signal(), -1);
  EXPECT_EQ(said, "StreamNotify -- Send Error.\n");
}

TEST_F(AStreamSignal, OfNothingIsRefusedBeforeASocketIsMade) {
  OutputCapture output;
  EXPECT_EQ(vl_StreamNotify(nullptr), -1);
  EXPECT_EQ(output.text(), "");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

std::string searching(const std::string &process) {
  return "/bin/ps | /bin/grep \"" + process + "\" | /bin/grep -v grep | /bin/awk '{print $1}'";
}

class ASourceProcess : public ContractTest {};

TEST_F(ASourceProcess, RunsWhenTheProcessListNamesIt) {
  host.commands.prints(searching("HDpipe 2"), "4711\n");
  EXPECT_EQ(vl_SourcerStreamingProcess(2, 0), 1);
  EXPECT_EQ(vl_SourcerStreamingProcess(2, 1), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre(searching("HDpipe 2"), searching("v4l2_read 2")));
}

TEST_F(ASourceProcess, OfAnyOtherKindThanZeroReadsACamera) {
  host.commands.prints(searching("v4l2_read 3"), "1\n2\n");
  EXPECT_EQ(vl_SourcerStreamingProcess(3, -5), 1);
}

TEST_F(ASourceProcess, RunsUnderAnyNumberButMinusOne) {
  for (const char *line : {"0\n", "\n", "text\n", "-2\n"}) {
    host.commands.prints(searching("HDpipe 2"), line);
    EXPECT_EQ(vl_SourcerStreamingProcess(2, 0), 1);
  }
  host.commands.prints(searching("HDpipe 2"), "-1\n");
  EXPECT_EQ(vl_SourcerStreamingProcess(2, 0), 0);
}

TEST_F(ASourceProcess, DoesNotRunWhenTheListCannotBeAskedFor) {
  host.commands.cannotStart(searching("HDpipe 2"));
  EXPECT_EQ(vl_SourcerStreamingProcess(2, 0), 0);
}

TEST_F(ASourceProcess, IsSearchedByTheSmallestNumberToo) {
  vl_SourcerStreamingProcess(-2147483647 - 1, 1);
  EXPECT_THAT(host.journal.commands(), ElementsAre(searching("v4l2_read -2147483648")));
}

class AProfileState : public ContractTest {};

TEST_F(AProfileState, IsWrittenToItsOwnFile) {
  EXPECT_EQ(mn_update_pfstate(3, 1), 0);
  EXPECT_THAT(host.config.values(kProfileStateFile), ElementsAre(testing::Pair("pf3/available", "1")));
  EXPECT_THAT(host.config.values(), IsEmpty());
}

TEST_F(AProfileState, IsWrittenForAnyNumberAndValue) {
  EXPECT_EQ(mn_update_pfstate(-1, -7), 0);
  EXPECT_EQ(mn_update_pfstate(-2147483647 - 1, 2), 0);
  EXPECT_THAT(host.config.values(kProfileStateFile),
              ElementsAre(testing::Pair("pf-1/available", "-7"), testing::Pair("pf-2147483648/available", "2")));
}

TEST_F(AProfileState, ThatCannotBeWrittenIsReported) {
  host.config.failWriteOpens(-3);
  OutputCapture output;
  EXPECT_EQ(mn_update_pfstate(0, 1), -1);
  EXPECT_EQ(output.text(), "open:[/etc/config/vl_pfstate.conf] failed, ret: -3\n");
}

class TheProductOfAProfile : public ContractTest {
 protected:
  TheProductOfAProfile() { host.channel(5).profile(1).vnode(2).slot("1-1.2"); }
  int query(int profile = 1) {
    OutputCapture output;
    const int result = vl_get_pidvid(profile, pidvid);
    said = output.text();
    return result;
  }

  char pidvid[16] = "before";
  std::string said;
};

TEST_F(TheProductOfAProfile, IsReported) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  EXPECT_EQ(query(), 0);
  EXPECT_STREQ(pidvid, "046d:0825");
  EXPECT_THAT(host.journal.lines(),
              ElementsAre("open r", "close", "open r", "close", "popen " + walkCommand(2), "pclose " + walkCommand(2)));
}

TEST_F(TheProductOfAProfile, IsReportedWithUpTo15Characters) {
  host.camera(2, "1-1.2").ids("1234567", "1234567");
  EXPECT_EQ(query(), 0);
  EXPECT_STREQ(pidvid, "1234567:1234567");
}

TEST_F(TheProductOfAProfile, WithoutIdsIsNotReported) {
  EXPECT_EQ(query(), -3);
  EXPECT_STREQ(pidvid, "before");
}

TEST_F(TheProductOfAProfile, WithoutANodeIsSearchedForAtNodeMinusOne) {
  host.channel(5).vnode(-1);
  EXPECT_EQ(query(), -3);
  EXPECT_THAT(host.journal.commands(), ElementsAre(walkCommand(-1)));
}

TEST_F(TheProductOfAProfile, WithoutAChannelIsNotReported) {
  for (const int profile : {0, -1, 4}) EXPECT_EQ(query(profile), -1);
  EXPECT_STREQ(pidvid, "before");
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(TheProductOfAProfile, IsNotReportedWhenTheMappingCannotBeRead) {
  host.config.failReadOpens(-3);
  EXPECT_EQ(query(), -1);
  EXPECT_EQ(said, openFailure(-3));
}

TEST_F(TheProductOfAProfile, IsSilentlyNotReportedWhenItsChannelCannotBeRead) {
  host.config.failOpenNumber(2, -3);
  EXPECT_EQ(query(), -2);
  EXPECT_EQ(said, "");
}

TEST_F(TheProductOfAProfile, IsRefusedWithoutAPlaceForIt) {
  EXPECT_EQ(vl_get_pidvid(1, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
