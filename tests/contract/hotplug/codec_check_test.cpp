// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What becomes of channels that only an encoding host could stream.
#include <string>

#include "encoding_host.h"
#include "start_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(ACodecCheck, SkipsChannelsWithoutANodeOrOutOfUse) {
  configured(2, "3-1", "Raw").vnode(-1).set("video/cap", "0");
  configured(3, "3-2", "Raw").exists(0).vnode(5).set("video/cap", "0");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.journal.only({"open"}), ElementsAre("open r")) << "opened for writing only when a channel is marked";
}

TEST_F(ACodecCheck, TakesMissingKeysAsMjpegWithoutFormats) {
  host.channel(2).exists(1).vnode(0);                          // no codec, no formats
  host.channel(3).vnode(5).set("video/cap", "0");              // neither attached nor with a profile
  host.channel(4).exists(1).vnode(6).set("video/cap", "0 1");  // no codec
  host.channel(5).exists(1).set("video/cap", "0");             // no node
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/conflictch=999"));
}

TEST_F(ACodecCheck, LooksAtTheFirstAndTheLastChannelToo) {
  configured(0, "3-1", "Raw").vnode(4).set("video/cap", "0");
  configured(9, "3-2", "Both").vnode(5).vcodec(0).set("video/cap", "1");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch0/conflictch=999", "ch9/video/vcodec=1"));
}

TEST_F(ACodecCheck, CountsADisplacedCameraAsAttached) {
  configured(2, "3-1", "Raw").exists(-1).vnode(4).set("video/cap", "0");
  EXPECT_EQ(check_halvane(), 0);
  EXPECT_THAT(host.config.writes(), ElementsAre("ch2/conflictch=999"));
}

TEST_F(ACodecCheck, FailsWhenTheFileCannotBeOpenedInEitherPass) {
  configured(2, "3-1", "Raw").vnode(4).set("video/cap", "0");
  for (const int open : {1, 2}) {
    host.config.failOpenNumber(open, -8);
    OutputCapture output;
    EXPECT_EQ(check_halvane(), -1) << open;
    EXPECT_EQ(output.text(), openFailure(-8));
  }
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

}  // namespace
}  // namespace contract
