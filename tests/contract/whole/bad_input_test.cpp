// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Devices, tools and files that are not as they should be: a clear result, nothing lost, nothing left open.
#include <algorithm>

#include "encoding_host.h"
#include "hotplug/hotplug_fixture.h"

namespace contract {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string repeated(const std::string &part, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += part;
  return all;
}

const std::string kBinary = std::string("\0\x01\xff\xfe:\"'=\0\n\x80\x7f", 12) + "\n" + std::string(700, '\xff');

class AStrangeName : public HotplugTest {
 protected:
  std::string storedAs(const std::string &name) {
    place(kSlot, name);
    EXPECT_EQ(plug(), 0);
    return host.channel(0).get("devname");
  }
};

TEST_F(AStrangeName, IsStoredByteForByte) {
  for (const char *name : {"It's \"the\" one", "two\nlines\r\n\t", "caf\xc3\xa9 \xff\x80", "%s%n%d", "$(reboot)`id`"}) {
    EXPECT_EQ(storedAs(name), name);
  }
}

TEST_F(AStrangeName, OfMoreThan255BytesIsCut) { EXPECT_EQ(storedAs(std::string(300, 'n')), std::string(255, 'n')); }

TEST_F(AStrangeName, OfMoreThan255BytesIsKnownAgain) {
  known(3, 1, 1, kSlot, std::string(300, 'n'));
  place(kSlot, std::string(256, 'n'));
  EXPECT_EQ(plug(), 3);
  EXPECT_EQ(profile, 1);
}

TEST_F(AStrangeName, OfAStored300BytesIsReturnedCut) {
  known(3, 1, 1, kSlot, std::string(300, 'n'));
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(devname, std::string(255, 'n'));
}

TEST_F(AStrangeName, OfAStored300BytesIsReportedCut) {
  known(6, 1, 2, "1-1.6", std::string(300, 'n')).profileName(std::string(300, 'p'));
  plug();
  EXPECT_EQ(std::string(report.devname, 256), std::string(255, 'n') + '\0');
  EXPECT_EQ(std::string(report.profilename, 256), std::string(255, 'p') + '\0');
}

TEST_F(AStrangeName, ReachesTheEventLogAsItIs) {
  host.camera(2, kSlot).listing(Listing().format("MJPG").size(1, 1).rate("90.000").text());
  const std::string name = "%s%n" + std::string(250, 'n');
  storedAs(name);
  EXPECT_THAT(host.journal.only({"log"}), Contains(HasSubstr("Camera[1-1 " + name + "] has image size over 60 fps.")));
}

class AStrangePortName : public HotplugTest {};

TEST_F(AStrangePortName, ReachesNoShell) {
  for (const char *slot : {"1-1; reboot", "$(reboot)", "`reboot`", "1-1\nreboot", "'reboot'", "| reboot"}) {
    place(slot, kName);
    EXPECT_GE(plug(), 0) << slot;
  }
  EXPECT_THAT(host.journal.commands(), Each(Not(HasSubstr("reboot"))));
}

TEST_F(AStrangePortName, OfTheLongestNameIsStored) {
  place(std::string(127, '1'), kName);
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(host.channel(0).get("usbslot"), std::string(127, '1'));
  EXPECT_EQ(pullOut(), 0);
}

TEST_F(AStrangePortName, ThatIsUnterminatedIsRefused) {
  place(std::string(128, '1'), kName);
  known(3, 1, 1, std::string(128, '1'));
  EXPECT_EQ(plug(), -1);
  EXPECT_EQ(pullOut(), -1);
  EXPECT_THAT(host.config.writes(), IsEmpty());
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(AStrangePortName, ThatIsEmptyIsPluggedInAndRemovedLikeAnyOther) {
  place("", kName);
  EXPECT_GE(plug(), 0);
  EXPECT_GE(pullOut(), 0);
}

class AStrangeNode : public HotplugTest {};

TEST_F(AStrangeNode, IsAskedForAndStoredByItsNumber) {
  for (const int node : {-2147483647 - 1, -1, 99999, 2147483647}) {
    device.node = node;
    EXPECT_EQ(plug(), 0);
    EXPECT_THAT(host.journal.commands(), Contains(listingCommand(node)));
    EXPECT_EQ(host.channel(0).get("video/vnode"), std::to_string(node));
  }
}

TEST_F(AStrangeNode, OfASoundCardGetsAChannelWithoutSound) {
  isCard("USB Audio");
  for (const int node : {-1, 2147483647}) {
    device.node = node;
    EXPECT_EQ(plug(), 0);
  }
}

class AStrangeTool : public HotplugTest {
 protected:
  AStrangeTool() {
    allowEncoding(host);
    known(6, 1, 2, "4-6");  // makes the bridges matter
  }
  void everyToolPrints(const std::string &output) {
    for (const std::string &tool :
         {listingCommand(2), walkCommand(2), classCommand(2), deviceLineCommand(2), classCommand(26),
          deviceLineCommand(26), queryProcessCommand(2), std::string(kGpuListCommand), std::string(kGpuStateCommand)}) {
      host.commands.prints(tool, output);
    }
    host.package("Halvane", "Install_Path", output);
  }
  void expectTakenInAsUnsupported() {
    EXPECT_EQ(plug(), 0);
    EXPECT_EQ(host.channel(0).get("exists"), "1");
    EXPECT_EQ(host.channel(0).get("video/cap"), "");
    EXPECT_EQ(host.channel(0).get("conflictch"), "999");
    EXPECT_EQ(host.channel(6).get("video/vnode"), "26");
  }
};

TEST_F(AStrangeTool, ThatPrintsNothingMakesTheCameraUnsupported) {
  everyToolPrints("");
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatPrintsBinaryDataMakesTheCameraUnsupported) {
  everyToolPrints(kBinary);
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatPrints2000LinesMakesTheCameraUnsupported) {
  everyToolPrints(repeated("Index: Size: Interval: (\n", 2000));
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatPrintsLinesOf5000BytesMakesTheCameraUnsupported) {
  everyToolPrints(repeated(std::string(5000, '(') + "\n", 200));
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatNeverEndsALineMakesTheCameraUnsupported) {
  everyToolPrints(std::string(1000000, 'x'));
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatIsMissingMakesTheCameraUnsupported) {
  for (const std::string &tool : {listingCommand(2), walkCommand(2), classCommand(2), deviceLineCommand(2),
                                  queryProcessCommand(2), std::string(kGpuListCommand), std::string(kModelCommand)}) {
    host.commands.cannotStart(tool);
  }
  expectTakenInAsUnsupported();
}

TEST_F(AStrangeTool, ThatFloodsAfterAGoodListingDoesNoHarm) {
  host.camera(2, kSlot).listing(Listing().format("MJPG").size(640, 480).rate("30.000").text() +
                                repeated(std::string(5000, 'x') + "\n", 2000));
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(host.channel(0).get("video/cap"), "1");
}

TEST_F(AStrangeTool, ThatPrintsAListingOfManyFormatsAndSizesFillsNoMoreThanTheTable) {
  Listing listing;
  for (int format = 0; format < 20; ++format) {
    listing.format("MJPG");
    for (int size = 1; size < 40; ++size) listing.size(size, format);
  }
  host.camera(2, kSlot).listing(listing.text());
  EXPECT_EQ(plug(), 0);
  EXPECT_EQ(host.channel(0).get("video/cap"), "1 1 1 1 1 1 1 1");
}

class AStrangeFile : public HotplugTest {
 protected:
  void expectTakenInAsSupported() {
    EXPECT_EQ(plug(), 0);
    EXPECT_EQ(host.channel(0).get("conflictch"), "-1");
    EXPECT_EQ(host.channel(0).get("video/fetype"), "");
  }
};

TEST_F(AStrangeFile, ThatIsUnreadableListsNothing) {
  host.files.makeUnreadable(kNoSupportList);
  host.files.makeUnreadable(kFrontEndList);
  expectTakenInAsSupported();
}

TEST_F(AStrangeFile, ThatIsEmptyListsNothing) {
  host.files.write(kNoSupportList, "");
  host.files.write(kFrontEndList, "");
  expectTakenInAsSupported();
}

TEST_F(AStrangeFile, ThatIsBinaryListsNothing) {
  host.files.write(kNoSupportList, kBinary);
  host.files.write(kFrontEndList, kBinary);
  expectTakenInAsSupported();
}

TEST_F(AStrangeFile, OfOneEndlessLineListsNothing) {
  host.files.write(kNoSupportList, std::string(100000, 'x'));
  host.files.write(kFrontEndList, std::string(100000, 'x'));
  expectTakenInAsSupported();
}

class AStrangeConfiguration : public HotplugTest {};

TEST_F(AStrangeConfiguration, ThatIsEmptyGetsTheCamera) { EXPECT_EQ(plug(), 0); }

TEST_F(AStrangeConfiguration, WithTextsInsteadOfNumbersIsReadAsZeros) {
  for (const char *key : {"exists", "slot_switch", "conflictch", "video/vnode", "video/vcodec"}) {
    host.channel(0).set(key, std::string("never"));
  }
  EXPECT_EQ(plug(), 0);
}

TEST_F(AStrangeConfiguration, WithHugeNumbersIsTakenAsItIs) {
  known(3, 1, 2147483647).conflict(2147483647).vnode(-2147483647);
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(profile, 2147483647);
  EXPECT_EQ(vnode, -2147483647);
}

TEST_F(AStrangeConfiguration, ThatMakesAChannelWaitForItselfDoesNoHarm) {
  known(3, 1, 1).conflict(3);
  EXPECT_EQ(pullOut(), 3);
  EXPECT_EQ(host.channel(3).get("conflictch"), "-1");
}

class TenCameras : public HotplugTest {
 protected:
  TenCameras() {
    for (int i = 0; i < 10; ++i) {
      place("2-" + std::to_string(i), kName);
      EXPECT_EQ(plug(), i);
    }
    place("3-1", kName);
  }
};

TEST_F(TenCameras, LeaveNoChannelForAnEleventh) {
  const FakeConfig::Values before = host.config.values();
  host.journal.clear();
  EXPECT_EQ(plug(), -1);
  EXPECT_EQ(profile, -1);
  EXPECT_EQ(host.config.values(), before);
  EXPECT_THAT(host.journal.commands(), IsEmpty());
}

TEST_F(TenCameras, LoseNothingByARemovalThatWasNeverPlugged) {
  const FakeConfig::Values before = host.config.values();
  EXPECT_EQ(pullOut(), -1);
  EXPECT_EQ(profile, -1);
  EXPECT_EQ(devname, "(untouched)");
  EXPECT_EQ(host.config.values(), before);
}

TEST_F(TenCameras, LeaveAChannelForTheNextWhenOneIsUnplugged) {
  place("2-4", kName);
  EXPECT_EQ(pullOut(), 4);
  place("3-1", kName);
  EXPECT_EQ(plug(), 4);
}

}  // namespace
}  // namespace contract
