// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The order in which an event takes effect, and what remains of one that fails on the way.
#include "hotplug_fixture.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AnEvent : public HotplugTest {
 protected:
  AnEvent() { known(3, 1, 1); }

  Lines effects() const { return host.journal.only({"open", "close", "system", "popen", "log", "notify"}); }
};

TEST_F(AnEvent, OfAPluggedCameraReadsAsksWritesAndNotifies) {
  host.camera(2, kSlot).listing(Listing().format("MJPG").size(640, 480).rate("90.000").text());
  plug();
  EXPECT_THAT(effects(),
              ElementsAre("open r", "close", "system " + std::string(kProcessorCommand),
                          "popen " + packageQuery("Halvane", "Install_Path"), "popen " + listingCommand(2),
                          "popen " + queryProcessCommand(2),
                          "log 1 Camera[1-1 HD Webcam] has image size over 60 fps. It may cause decode error.",
                          "popen " + walkCommand(2), "open w", "close",
                          "notify event=6 profile=1 video=0 audio=1 flag=0 target=1"));
}

TEST_F(AnEvent, OfARemovedCameraReadsWritesHandsOverAndNotifies) {
  pullOut();
  EXPECT_THAT(effects(), ElementsAre("open r", "close", "open w", "close", "open r", "close", "open w", "close",
                                     "notify event=7 profile=1 video=-1 audio=-1 flag=0 target=-1"));
}

TEST_F(AnEvent, OfADeviceWithoutAChannelReadsOnly) {
  for (int i = 0; i < 10; ++i) known(i, 1, -1, "9-9");
  EXPECT_EQ(plug(), -1);
  EXPECT_THAT(effects(), ElementsAre("open r", "close"));
  EXPECT_EQ(host.journal.count("fopen failed " + std::string(kNoSupportList)), 0);
}

// After an event that was read, so that what it read may still lie in memory.
TEST_F(AnEvent, FailsWhenTheConfigurationCannotBeRead) {
  EXPECT_EQ(plug(), 3);
  vnode = 77;
  host.journal.clear();
  host.config.failReadOpens(-7);
  for (const bool comes : {true, false}) {
    profile = 77;
    EXPECT_EQ(comes ? plug() : pullOut(), -1);
    EXPECT_EQ(profile, -1);
    EXPECT_EQ(message, openFailure(-7));
    EXPECT_EQ(devname, "(untouched)");
    EXPECT_EQ(vnode, 77);
  }
  EXPECT_THAT(effects(), ElementsAre("open r failed", "open r failed"));
}

TEST_F(AnEvent, FailsWhenTheConfigurationCannotBeWrittenAndLosesNothing) {
  const FakeConfig::Values before = host.config.values();
  host.config.failWriteOpens(0);
  for (const bool comes : {true, false}) {
    EXPECT_EQ(comes ? plug() : pullOut(), -1);
    EXPECT_EQ(message, openFailure(0));
  }
  EXPECT_EQ(host.config.values(), before);
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
  EXPECT_EQ(effects().back(), "open w failed");
}

TEST_F(AnEvent, OfAnUnpluggedCameraIsNotifiedThoughNothingCanBeHandedOver) {
  host.config.failOpenNumber(3, -7);
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(message, openFailure(-7));
  EXPECT_EQ(effects().back(), "notify event=7 profile=1 video=-1 audio=-1 flag=0 target=-1");
}

TEST_F(AnEvent, WithoutOneOfItsArgumentsFailsBeforeAnything) {
  char name[256] = "kept";
  EXPECT_EQ(mn_set_usbdev_hotplug(nullptr, &profile, name, &vnode, &report), -1);
  EXPECT_EQ(mn_set_usbdev_hotplug(&device, nullptr, name, &vnode, &report), -1);
  EXPECT_EQ(mn_set_usbdev_hotplug(&device, &profile, nullptr, &vnode, &report), -1);
  EXPECT_EQ(mn_set_usbdev_hotplug(&device, &profile, name, nullptr, &report), -1);
  EXPECT_EQ(mn_set_usbdev_hotplug(&device, &profile, name, &vnode, nullptr), -1);
  EXPECT_EQ(profile, 77);
  EXPECT_EQ(vnode, 77);
  EXPECT_STREQ(name, "kept");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

}  // namespace
}  // namespace contract
