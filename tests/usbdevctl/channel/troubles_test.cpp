// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/troubles.h"

#include <gmock/gmock.h>

#include "machine/fake_machine.h"
#include "some_cameras.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using usbdevctl::addTroubles;
using usbdevctl::ChannelRows;
using usbdevctl::ChannelState;
using usbdevctl::Machine;
using usbdevctl::portsWithoutChannel;
using usbdevctl::withoutChannelText;

// Channel 4 has the camera in port 3-1.
class TheTroubles : public testing::Test {
 protected:
  TheTroubles() {
    fake_.plug("3-1", "Cam", "1", 0);
    rows_[4] = attachedRow("3-1", 2);
    rows_[4].video_node = 0;
  }

  FakeMachine fake_;
  Machine machine_{fake_.root()};
  ChannelRows rows_;
};

TEST_F(TheTroubles, AreNoneIfNothingIsWrong) {
  addTroubles(rows_, machine_);
  EXPECT_FALSE(rows_[4].trouble);
  EXPECT_THAT(portsWithoutChannel(rows_, machine_), IsEmpty());
}

TEST_F(TheTroubles, AreThoseOfTheMachine) {
  rows_[4].video_node = 7;
  addTroubles(rows_, machine_);
  EXPECT_STREQ(rows_[4].trouble->word, "gone");
  EXPECT_FALSE(rows_[3].trouble);
}

TEST_F(TheTroubles, NameACameraThatHasNoChannel) {
  fake_.plug("3-2", "Fresh\x1b", "2", 2);
  rows_[5] = attachedRow("3-2");
  rows_[5].state = ChannelState::unplugged;
  EXPECT_THAT(portsWithoutChannel(rows_, machine_), ElementsAre("3-2"));
  EXPECT_EQ(
      withoutChannelText("3-2", machine_),
      "3-2  \"Fresh\\x1b\": It has no channel. 'usbdevctl sync' gives it one, unless all ten are taken; 'usbdevctl "
      "forget' frees that of a camera that will not come back.");
}

TEST_F(TheTroubles, NameWhatIsWrongWithACameraThatHasNoChannel) {
  fake_.plug("3-2", "Fresh", "2", 2);
  std::filesystem::remove_all(fake_.root() + "/sys/bus/usb/devices/3-2/3-2:1.0/video4linux");
  EXPECT_EQ(
      withoutChannelText("3-2", machine_),
      "3-2  \"Fresh\": It has no node for pictures. 'sudo modprobe uvcvideo' loads the driver; then plug the camera in "
      "again.");
}

TEST_F(TheTroubles, NameACameraWithoutANameByItsPort) {
  fake_.plug("3-2", "", "2", 2);
  EXPECT_THAT(withoutChannelText("3-2", machine_), StartsWith("3-2: It has no channel."));
}

TEST_F(TheTroubles, AreNoneWithoutAKernel) {
  std::filesystem::remove_all(fake_.root() + "/sys/kernel");
  addTroubles(rows_, machine_);
  EXPECT_FALSE(rows_[4].trouble);
  EXPECT_THAT(portsWithoutChannel({}, machine_), IsEmpty());
}

}  // namespace
