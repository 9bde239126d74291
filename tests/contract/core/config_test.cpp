// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The access pattern of the channel configuration, seen through its simplest users.
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TheChannelFile : public ContractTest {
 protected:
  // The device name of profile 0, read by the library into a buffer with guards after its 256 bytes.
  std::string deviceName() {
    std::string buffer(300, '#');
    EXPECT_EQ(vl_getDevName(0, buffer.data()), 0);
    EXPECT_EQ(buffer.substr(256), std::string(44, '#'));
    return buffer.c_str();
  }
  std::string deviceNameStoredAs(const std::string &stored) {
    host.channel(4).profile(0).name(stored);
    return deviceName();
  }
};

TEST_F(TheChannelFile, IsOpenedForReadingAndClosedAgainByAReader) {
  host.channel(4).profile(0);
  int channel = -7;
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), 0);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close"));
}

TEST_F(TheChannelFile, WithoutAKeyReadsAsTheReadersDefault) {
  host.channel(4).profile(0);
  EXPECT_EQ(deviceName(), "");
}

TEST_F(TheChannelFile, WithoutAnySectionHoldsNoProfile) {
  int channel = -7;
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), -1);
  EXPECT_EQ(channel, -7);
}

TEST_F(TheChannelFile, WithoutASectionForOneChannelStillGivesTheNextChannel) {
  host.channel(8).profile(0);
  int channel = -7;
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), 0);
  EXPECT_EQ(channel, 8);
}

TEST_F(TheChannelFile, GivesATextThatJustFitsItsBufferWhole) {
  EXPECT_EQ(deviceNameStoredAs(std::string(255, 'n')), std::string(255, 'n'));
}

TEST_F(TheChannelFile, GivesATextThatFillsItsBufferCutAndTerminated) {
  EXPECT_EQ(deviceNameStoredAs(std::string(256, 'n')), std::string(255, 'n'));
}

TEST_F(TheChannelFile, GivesATextLongerThanItsBufferCutAndTerminated) {
  EXPECT_EQ(deviceNameStoredAs(std::string(300, 'n')), std::string(255, 'n'));
}

TEST_F(TheChannelFile, GivesHostileTextUnchanged) {
  const std::string name = "a\"b'c`$(x)\n<&>\x01\xff%s%n";
  EXPECT_EQ(deviceNameStoredAs(name), name);
}

TEST_F(TheChannelFile, IsUntouchedByAReader) {
  host.channel(4).profile(0).name("HD Webcam");
  const FakeConfig::Values before = host.config.values();
  deviceName();
  EXPECT_EQ(host.config.values(), before);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

class AChannelFileThatCannotBeOpened : public ContractTest, public testing::WithParamInterface<int> {};

TEST_P(AChannelFileThatCannotBeOpened, IsReportedWithItsCode) {
  host.config.failReadOpens(GetParam());
  OutputCapture output;
  int channel = -7;
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), -1);
  EXPECT_EQ(output.text(), openFailure(GetParam()));
  EXPECT_EQ(channel, -7);
}

TEST_P(AChannelFileThatCannotBeOpened, IsReportedInOnePiece) {
  host.config.failReadOpens(GetParam());
  const int all_of_stderr = dup(STDERR_FILENO);
  int packets[2];
  ASSERT_EQ(pipe2(packets, O_DIRECT | O_NONBLOCK), 0);  // keeps what each write wrote apart
  dup2(packets[1], STDERR_FILENO);
  int channel = -7;
  trsProfiletoPlugCh(0, &channel);
  dup2(all_of_stderr, STDERR_FILENO);
  char piece[256];
  EXPECT_EQ(read(packets[0], piece, sizeof piece), static_cast<ssize_t>(openFailure(GetParam()).size()));
  for (int descriptor : {packets[0], packets[1], all_of_stderr}) close(descriptor);
}

TEST_P(AChannelFileThatCannotBeOpened, LeavesTheLockFreeForTheNextReader) {
  host.channel(4).profile(0);
  host.config.failReadOpens(GetParam());
  int channel = -7;
  {
    OutputCapture output;
    trsProfiletoPlugCh(0, &channel);
  }
  host.config.failNothing();
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), 0);
  EXPECT_EQ(channel, 4);
}

INSTANTIATE_TEST_SUITE_P(WithAnyCodeButOne, AChannelFileThatCannotBeOpened, testing::Values(0, -1, 2, -2147483647));

class AChannelFileThatCannotBeWritten : public ContractTest {
 protected:
  // A recomputation of the conflicts writes even when nothing is to be recomputed.
  int write() {
    OutputCapture output;
    int states[10] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    const int result = syncConflict(states);
    message = output.text();
    return result;
  }

  std::string message;
};

TEST_F(AChannelFileThatCannotBeWritten, IsReportedWithItsCode) {
  host.config.failWriteOpens(-3);
  EXPECT_EQ(write(), -1);
  EXPECT_EQ(message, openFailure(-3));
}

TEST_F(AChannelFileThatCannotBeWritten, IsStillReadByTheNextReader) {
  host.channel(4).profile(0);
  host.config.failWriteOpens(-3);
  write();
  int channel = -7;
  EXPECT_EQ(trsProfiletoPlugCh(0, &channel), 0);
  EXPECT_EQ(channel, 4);
}

TEST_F(AChannelFileThatCannotBeWritten, StaysAsItWas) {
  host.channel(4).profile(0).conflict(5);
  const FakeConfig::Values before = host.config.values();
  host.config.failWriteOpens(-3);
  write();
  EXPECT_EQ(host.config.values(), before);
}

}  // namespace
}  // namespace contract
