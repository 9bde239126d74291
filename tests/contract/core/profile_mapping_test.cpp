// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// From a profile to the channel that serves it, and to the channel's device name.
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AProfile : public ContractTest {
 protected:
  int deviceNameOf(int profile) {
    OutputCapture output;
    const int result = vl_getDevName(profile, name.data());
    message = output.text();
    return result;
  }

  std::string name = std::string(256, '#');
  std::string message;
  int channel = -7;
};

class EveryProfile : public AProfile, public testing::WithParamInterface<int> {};

TEST_P(EveryProfile, IsFoundInTheChannelThatHoldsIt) {
  host.channel(9).profile(GetParam());
  EXPECT_EQ(trsProfiletoPlugCh(GetParam(), &channel), 0);
  EXPECT_EQ(channel, 9);
}

INSTANTIATE_TEST_SUITE_P(FromZeroToThree, EveryProfile, testing::Range(0, 4));

class AProfileOutOfRange : public AProfile, public testing::WithParamInterface<int> {};

TEST_P(AProfileOutOfRange, HasNoChannelAndOpensNothing) {
  host.channel(2).profile(GetParam());
  EXPECT_EQ(trsProfiletoPlugCh(GetParam(), &channel), -1);
  EXPECT_EQ(channel, -7);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_P(AProfileOutOfRange, HasNoDeviceNameAndOpensNothing) {
  host.channel(2).profile(GetParam());
  EXPECT_EQ(deviceNameOf(GetParam()), -1);
  EXPECT_EQ(name, std::string(256, '#'));
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(BelowAndAbove, AProfileOutOfRange, testing::Values(-1, 4, -2147483647, 2147483647));

TEST_F(AProfile, HeldByTwoChannelsIsFoundInTheLower) {
  host.channel(3).profile(1);
  host.channel(6).profile(1);
  EXPECT_EQ(trsProfiletoPlugCh(1, &channel), 0);
  EXPECT_EQ(channel, 3);
}

TEST_F(AProfile, IsFoundInTheFirstChannelToo) {
  host.channel(0).profile(2);
  EXPECT_EQ(trsProfiletoPlugCh(2, &channel), 0);
  EXPECT_EQ(channel, 0);
}

TEST_F(AProfile, IsFoundWhetherOrNotItsDeviceIsThere) {
  host.channel(5).profile(2).exists(0);
  EXPECT_EQ(trsProfiletoPlugCh(2, &channel), 0);
  EXPECT_EQ(channel, 5);
}

TEST_F(AProfile, OfAnEleventhChannelDoesNotCount) {
  host.channel(10).profile(2);
  EXPECT_EQ(trsProfiletoPlugCh(2, &channel), -1);
}

TEST_F(AProfile, OfNoChannelHasNoDeviceName) {
  host.channel(3).profile(1).name("HD Webcam");
  EXPECT_EQ(deviceNameOf(2), -1);
  EXPECT_EQ(name, std::string(256, '#'));
  EXPECT_EQ(message, "");
}

TEST_F(AProfile, HasTheDeviceNameOfItsChannel) {
  host.channel(3).profile(1).name("HD Webcam");
  EXPECT_EQ(deviceNameOf(1), 0);
  EXPECT_STREQ(name.c_str(), "HD Webcam");
}

TEST_F(AProfile, IsMappedBeforeTheNameIsReadInAPassOfItsOwn) {
  host.channel(3).profile(1);
  deviceNameOf(1);
  EXPECT_THAT(host.journal.lines(), ElementsAre("open r", "close", "open r", "close"));
}

TEST_F(AProfile, ThatCannotBeMappedIsReportedOnce) {
  host.config.failReadOpens(-4);
  EXPECT_EQ(deviceNameOf(1), -1);
  EXPECT_EQ(message, openFailure(-4));
  EXPECT_EQ(name, std::string(256, '#'));
}

TEST_F(AProfile, WhoseNameCannotBeReadFailsSilently) {
  host.channel(3).profile(1).name("HD Webcam");
  host.config.failOpenNumber(2, -4);
  EXPECT_EQ(deviceNameOf(1), -1);
  EXPECT_EQ(message, "");
  EXPECT_EQ(name, std::string(256, '#'));
}

TEST_F(AProfile, IsRefusedWithoutAPlaceForTheAnswer) {
  host.channel(3).profile(1);
  EXPECT_EQ(trsProfiletoPlugCh(1, nullptr), -1);
  EXPECT_EQ(vl_getDevName(1, nullptr), -1);
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
