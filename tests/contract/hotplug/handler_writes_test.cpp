// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What an event leaves in the configuration: exactly these keys, every other one untouched.
#include "encoding_host.h"
#include "hotplug_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

const Lines kOfEveryCamera = {"slot_switch=1",  "exists=1",       "video/vnode=2", "video/spsstate=0",
                              "conflictch=-1",  "video/cap=1",    "video/fetype=", "video/ldspoutput=0",
                              "audio/anode=-1", "audio/aenable=0"};
const Lines kOfANewCamera = {"usbslot=1-1",      "devname=HD Webcam",     "profile=-1",
                             "createtime=",      "profilename=",          "hlspath=",
                             "video/venable=1",  "video/vcodec=1",        "video/width=1280",
                             "video/height=720", "video/framerate=30.00", "video/osdenable=1",
                             "video/flip=0",     "video/mirror=0"};

Lines both(Lines lines, const Lines &more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

class ANewCamera : public HotplugTest {
 protected:
  std::string stored(const std::string &key) { return host.channel(0).get(key); }
};

TEST_F(ANewCamera, IsWrittenWithAllDefaults) {
  EXPECT_EQ(plug(), 0);
  EXPECT_THAT(writesTo(0), UnorderedElementsAreArray(both(kOfEveryCamera, kOfANewCamera)));
  EXPECT_EQ(host.config.writes().size(), writesTo(0).size());
}

TEST_F(ANewCamera, LeavesTheSoundAndTheShareLinkOfTheChannel) {
  for (const char *key : {"audio/acap", "audio/volume", "audio/acodec", "sharelink/hash_string", "vtag"}) {
    host.channel(0).set(key, "kept");
  }
  plug();
  for (const char *key : {"audio/acap", "audio/volume", "audio/acodec", "sharelink/hash_string", "vtag"}) {
    EXPECT_EQ(stored(key), "kept") << key;
  }
}

TEST_F(ANewCamera, IsWrittenWithTheSwitchOfItsPort) {
  host.channel(7).slot(kSlot).slotSwitch(0).profile(1).exists(0).name("Old");
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(stored("slot_switch"), "0");
}

TEST_F(ANewCamera, IsWrittenWithItsFrontEndType) {
  host.files.write(kFrontEndList, "046d:0825=3\n");
  plug();
  EXPECT_EQ(stored("video/fetype"), "3");
}

TEST_F(ANewCamera, IsWrittenWithTheCodecsOfItsFormatsInTheirOrder) {
  allowEncoding(host);
  host.camera(2, kSlot).listing(Listing().format("YUYV").format("MJPG").format("YUYV").text());
  plug();
  EXPECT_EQ(stored("video/cap"), "0 1 0");
  EXPECT_EQ(stored("video/vcodec"), "1");
}

TEST_F(ANewCamera, IsWrittenWithTheCodecsOfEightFormats) {
  Listing listing;
  for (int i = 0; i < 9; ++i) listing.format("MJPG");
  host.camera(2, kSlot).listing(listing.text());
  plug();
  EXPECT_EQ(stored("video/cap"), "1 1 1 1 1 1 1 1");
}

TEST_F(ANewCamera, OfRawFormatsOnlyIsEncodedByTheHost) {
  allowEncoding(host);
  host.camera(2, kSlot).listing(Listing().format("YUYV").text());
  plug();
  EXPECT_EQ(stored("video/cap"), "0");
  EXPECT_EQ(stored("video/vcodec"), "0");
  EXPECT_EQ(stored("conflictch"), "-1");
}

TEST_F(ANewCamera, WithoutAUsableFormatIsUnsupported) {
  host.camera(2, kSlot).listing(Listing().format("YUYV").text());
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(stored("video/cap"), "");
  EXPECT_EQ(stored("video/vcodec"), "0");
  EXPECT_EQ(stored("conflictch"), "999");
}

TEST_F(ANewCamera, ThatCannotBeAskedForFormatsIsUnsupported) {
  host.commands.cannotStart(listingCommand(2));
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(stored("video/vcodec"), "0");
  EXPECT_EQ(stored("conflictch"), "999");
}

TEST_F(ANewCamera, OnTheListIsUnsupportedButWrittenAsAnyOther) {
  host.files.write(kNoSupportList, "HD Webcam\n");
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(stored("conflictch"), "999");
  EXPECT_EQ(stored("video/cap"), "1");
  EXPECT_EQ(stored("video/vcodec"), "1");
}

TEST_F(ANewCamera, WhoseNameContainsAListedOneIsSupported) {
  host.files.write(kNoSupportList, "Webcam\n");
  plug();
  EXPECT_EQ(stored("conflictch"), "-1");
}

TEST_F(ANewCamera, WithARateAbove60IsWarnedOf) {
  host.camera(2, kSlot).listing(Listing().format("MJPG").size(640, 480).rate("60.100").text());
  plug();
  EXPECT_THAT(host.journal.only({"log"}),
              ElementsAre("log 1 Camera[1-1 HD Webcam] has image size over 60 fps. It may cause decode error."));
}

TEST_F(ANewCamera, WithARateOf60IsNotWarnedOf) {
  host.camera(2, kSlot).listing(Listing().format("MJPG").size(640, 480).rate("60.000").text());
  plug();
  EXPECT_THAT(host.journal.only({"log"}), IsEmpty());
}

TEST_F(ANewCamera, WithoutANameIsWrittenWithoutOne) {
  place(kSlot, "");
  host.channel(0).name("Old");
  plug();
  EXPECT_EQ(stored("devname"), "");
}

class AKnownCamera : public HotplugTest {
 protected:
  AKnownCamera() { known(3, 1, 1); }
};

TEST_F(AKnownCamera, KeepsItsSettings) {
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(host.config.writes().size(), kOfEveryCamera.size());
  EXPECT_THAT(writesTo(3), UnorderedElementsAreArray(kOfEveryCamera));
}

TEST_F(AKnownCamera, WithoutAUsableFormatKeepsItsCodecAndIsUnsupported) {
  host.camera(2, kSlot).listing("");
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(writesTo(3), Not(Contains("video/vcodec=0")));
  EXPECT_EQ(host.channel(3).get("conflictch"), "999");
}

TEST_F(AKnownCamera, WhoseSwitchIsOffStaysSwitchedOff) {
  host.channel(3).slotSwitch(0);
  plug();
  EXPECT_EQ(host.channel(3).get("slot_switch"), "0");
}

class AnotherCameraInThePort : public HotplugTest {
 protected:
  AnotherCameraInThePort() { known(3, 1, 1, kSlot, "Old").anode(5).vnode(-1).set("audio/acap", "1"); }
};

TEST_F(AnotherCameraInThePort, DisplacesTheOldOneAndGetsAllDefaults) {
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(profile, -1);
  EXPECT_THAT(writesTo(0), UnorderedElementsAreArray(both(kOfEveryCamera, kOfANewCamera)));
  EXPECT_THAT(writesTo(3), UnorderedElementsAre("exists=-1", "audio/anode=-1"));
}

TEST_F(AnotherCameraInThePort, LeavesTheOldOnesNodeAndProfile) {
  host.channel(3).vnode(23);
  plug();
  EXPECT_EQ(host.channel(3).get("video/vnode"), "23");
  EXPECT_EQ(host.channel(3).get("profile"), "1");
}

TEST_F(AnotherCameraInThePort, WaitsForTheOldOneWhoseNodeIsStillStored) {
  host.channel(3).vnode(23);
  plug();
  EXPECT_EQ(host.channel(0).get("conflictch"), "3");
}

class ARemoval : public HotplugTest {
 protected:
  ARemoval() { known(3, 1, 1, kSlot, "Stored Name"); }
};

TEST_F(ARemoval, OfACameraDetachesItsChannel) {
  EXPECT_EQ(pullOut(), 3);
  EXPECT_THAT(host.config.writes(), UnorderedElementsAre("ch3/exists=0", "ch3/video/vnode=-1", "ch3/audio/anode=-1",
                                                         "ch3/video/spsstate=0", "ch3/conflictch=-1"));
}

TEST_F(ARemoval, OfACameraReportsItsProfileStoredNameAndNode) {
  pullOut();
  EXPECT_EQ(profile, 1);
  EXPECT_EQ(devname, "Stored Name");
  EXPECT_EQ(vnode, 23);
}

TEST_F(ARemoval, OfAnUnsupportedOrWaitingCameraClearsItsMark) {
  for (const int mark : {999, 5}) {
    host.channel(3).exists(1).conflict(mark);
    EXPECT_EQ(pullOut(), 3);
    EXPECT_EQ(host.channel(3).get("conflictch"), "-1");
  }
}

TEST_F(ARemoval, OfASoundCardDetachesTheChannelButReportsNoName) {
  isCard("USB Audio");
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(host.channel(3).get("exists"), "0");
  EXPECT_EQ(devname, "(untouched)");
  EXPECT_EQ(vnode, 23);
}

TEST_F(ARemoval, OfAChannelWithoutANodeReportsNone) {
  host.config.erase("ch3/video/vnode");
  pullOut();
  EXPECT_EQ(vnode, -1);
}

TEST_F(ARemoval, AsksTheDeviceNothingAndLeavesTheReport) {
  pullOut();
  EXPECT_THAT(host.journal.commands(), IsEmpty());
  EXPECT_TRUE(isReportUntouched());
  EXPECT_EQ(report.devname[0], '?');
}

class APluggedCard : public HotplugTest {
 protected:
  APluggedCard() {
    isCard("USB Audio");
    host.sound.card(2, 1, 2, 2, "USB Audio");
  }
};

TEST_F(APluggedCard, LeavesItsChannelWithoutSound) {
  EXPECT_EQ(plug(), 0);
  EXPECT_THAT(host.config.writes(),
              UnorderedElementsAre("ch0/slot_switch=1", "ch0/audio/anode=-1", "ch0/audio/aenable=0"));
  EXPECT_THAT(host.journal.only({"card"}), ElementsAre("card 2"));
}

TEST_F(APluggedCard, MayBeDescribedByALongerRecordOfTheHosts) {
  host.sound.fillRecordsOf(1024);
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(host.channel(0).get("audio/anode"), "-1");
}

TEST_F(APluggedCard, ThatCannotBeDescribedIsWrittenAlike) {
  device.node = 9;
  EXPECT_EQ(plug(), 0);
  EXPECT_THAT(host.config.writes(),
              UnorderedElementsAre("ch0/slot_switch=1", "ch0/audio/anode=-1", "ch0/audio/aenable=0"));
}

TEST_F(APluggedCard, OnTheListIsUnsupported) {
  host.files.write(kNoSupportList, "USB Audio\n");
  plug();
  EXPECT_THAT(host.config.writes(), UnorderedElementsAre("ch0/slot_switch=1", "ch0/audio/anode=-1",
                                                         "ch0/audio/aenable=0", "ch0/conflictch=999"));
}

TEST_F(APluggedCard, IsLookedUpUnderTheNameOfItsChannel) {
  known(3, 1, -1);
  host.files.write(kNoSupportList, "HD Webcam\n");
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(writesTo(3), Contains("conflictch=999"));
}

TEST_F(APluggedCard, TakesTheSwitchOfItsPort) {
  known(3, 1, 1).slotSwitch(0);
  EXPECT_EQ(plug(), 3);
  EXPECT_THAT(writesTo(3), Contains("slot_switch=0"));
}

TEST_F(APluggedCard, RunsNothingDoesNotNotifyAndLeavesTheReport) {
  known(3, 1, 1);
  plug();
  EXPECT_THAT(host.journal.commands(), IsEmpty());
  EXPECT_THAT(host.network.datagrams(), IsEmpty());
  EXPECT_TRUE(isReportUntouched());
}

class AnIgnoredCard : public HotplugTest {
 protected:
  AnIgnoredCard() { isCard("KAB-110"); }
};

TEST_F(AnIgnoredCard, GetsNoChannel) {
  EXPECT_EQ(plug(), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.only({"open", "card"}), ElementsAre("open r"));
}

TEST_F(AnIgnoredCard, DetachesNoChannel) {
  known(3, 1, 1);
  EXPECT_EQ(pullOut(), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
}

TEST_F(AnIgnoredCard, IsKnownByTheBeginningOfItsName) {
  isCard("My KAB");
  EXPECT_EQ(plug(), 0);
  isCard("kab");
  EXPECT_EQ(plug(), 0);
}

TEST_F(AnIgnoredCard, GetsAChannelUnderAnotherNameOfItsChannel) {
  known(3, 1, -1);
  EXPECT_EQ(plug(), 3);
}

TEST_F(AnIgnoredCard, MayLendItsNameToACamera) {
  device.devtype = 1;
  EXPECT_EQ(plug(), 0);
}

}  // namespace
}  // namespace contract
