// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// When the manager is told of a camera, and what.
#include "hotplug_fixture.h"

namespace contract {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

// Channel 3 holds the camera and serves profile 1.
class ACameraOfAProfile : public HotplugTest {
 protected:
  ACameraOfAProfile() { known(3, 1, 1); }

  std::string told() const {
    const Lines lines = host.journal.only({"notify"});
    return lines.size() == 1 ? lines[0] : std::to_string(lines.size()) + " notifications";
  }
  void waiting(int number, int its_profile) {
    known(number, 1, its_profile, "1-1." + std::to_string(number))
        .conflict(3)
        .slotSwitch(1)
        .createTime("2024-03-05 08:15:00");
  }
};

TEST_F(ACameraOfAProfile, IsNotifiedWhenItIsPluggedIn) {
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(told(), "notify event=6 profile=1 video=0 audio=1 flag=0 target=1");
}

TEST_F(ACameraOfAProfile, IsNotifiedWhenItIsUnplugged) {
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(told(), "notify event=7 profile=1 video=-1 audio=-1 flag=0 target=-1");
}

TEST_F(ACameraOfAProfile, IsNotifiedIn56BytesWithAnEmptyHeader) {
  plug();
  ASSERT_THAT(host.network.datagrams(), SizeIs(1));
  const std::string bytes = host.network.datagrams()[0].bytes;
  ASSERT_EQ(bytes.size(), 56U);
  EXPECT_EQ(bytes.substr(0, 32), "ORDA_VLM2_CFCG_N" + std::string(16, '\0'));
}

TEST_F(ACameraOfAProfile, IsNotifiedWithTheProfileThatTakesOver) {
  waiting(6, 2);
  pullOut();
  EXPECT_EQ(told(), "notify event=7 profile=1 video=-1 audio=-1 flag=0 target=2");
}

TEST_F(ACameraOfAProfile, IsNotifiedWithTheStoredCodecByDefaultMjpeg) {
  host.channel(3).vcodec(1);
  plug();
  EXPECT_THAT(host.network.datagrams(), SizeIs(1));
}

TEST_F(ACameraOfAProfile, IsNotNotifiedWhenTheHostEncodesIt) {
  for (const int codec : {0, 2, -1}) {
    host.channel(3).vcodec(codec);
    plug();
  }
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(ACameraOfAProfile, IsNotNotifiedUnlessItsPortIsSwitchedOn) {
  for (const int slot_switch : {0, 2, -2}) {
    host.channel(3).slotSwitch(slot_switch);
    plug();
  }
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(ACameraOfAProfile, IsNotNotifiedWhenItWaitsForAnother) {
  known(6, 1, 2, "1-1.6");
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(ACameraOfAProfile, IsNotifiedWhenItMakesAnotherWait) {
  known(6, 1, -1, "1-1.6");
  plug();
  EXPECT_EQ(told(), "notify event=6 profile=1 video=0 audio=1 flag=0 target=1");
}

TEST_F(ACameraOfAProfile, IsNotNotifiedWhenAnotherCameraIsPluggedIn) {
  place(kSlot, "Another");
  EXPECT_EQ(plug(), 0);
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(ACameraOfAProfile, IsNotifiedAfterARestart) {
  host.channel(3).exists(0);
  plug();
  EXPECT_EQ(told(), "notify event=6 profile=1 video=0 audio=1 flag=0 target=1");
}

TEST_F(ACameraOfAProfile, GetsAChannelEvenWhenTheNotificationFails) {
  host.network.failSends();
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(message, "socket send to manager error\n");
  host.network.failSockets();
  EXPECT_EQ(pullOut(), 3);
}

class ACameraWithoutAProfile : public HotplugTest {
 protected:
  ACameraWithoutAProfile() { known(3, 1, -1); }
};

TEST_F(ACameraWithoutAProfile, IsNotNotifiedWhenItIsPluggedIn) {
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
}

TEST_F(ACameraWithoutAProfile, IsNotifiedWhenItIsUnplugged) {
  pullOut();
  EXPECT_EQ(host.journal.count("notify event=7 profile=-1 video=-1 audio=-1 flag=0 target=-1"), 1);
}

}  // namespace
}  // namespace contract
