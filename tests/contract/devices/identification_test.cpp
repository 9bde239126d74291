// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which physical device a video node belongs to.
#include <platform/xmlcfg.h>

#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kFrontEndFile[] = "/etc/config/.usbFECam.dat";

// A record as a lookup's caller makes it: nothing but the node and the slot means anything.
_usbdev_des lookupRecord(int node, const std::string &slot) {
  _usbdev_des device;
  memset(&device, '0', sizeof device);
  device.node = node;
  memset(device.usbslot, 0, sizeof device.usbslot);
  slot.copy(device.usbslot, sizeof device.usbslot - 1);
  return device;
}

class ACamera : public ContractTest {
 protected:
  int pidvid() { return intoText(find_pidvid); }
  int frontEndType() { return intoText(get_fetypeid); }
  void walk(const std::string &lines) { host.commands.prints(walkCommand(2), lines); }

  _usbdev_des device = lookupRecord(2, "1-1.2");
  std::string text;

 private:
  int intoText(int (*function)(const _usbdev_des *, char *)) {
    std::string out = std::string(16, '\0') + "###";
    const int result = function(&device, out.data());
    EXPECT_EQ(out.substr(16), "###");
    text = out.c_str();
    return result;
  }
};

const std::string kMarker = "    KERNELS==\"1-1.2\"\n";
const std::string kVendor = "    ATTRS{idVendor}==\"046d\"\n";
const std::string kProduct = "    ATTRS{idProduct}==\"0825\"\n";
const std::string kNextParent = "  looking at parent device '/devices/usb1/1-1':\n";

TEST_F(ACamera, HasTheIdentifiersOfItsOwnBlock) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, "046d:0825");
  EXPECT_THAT(host.journal.lines(), ElementsAre("popen /sbin/udevadm info --name=/dev/video2 --attribute-walk",
                                                "pclose /sbin/udevadm info --name=/dev/video2 --attribute-walk"));
}

TEST_F(ACamera, WithAVendorOnlyHasAnEmptyProduct) {
  walk(kMarker + kVendor);
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, "046d:");
}

TEST_F(ACamera, WithAProductOnlyHasAnEmptyVendor) {
  walk(kMarker + kProduct + kNextParent + kVendor);
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, ":0825");
}

TEST_F(ACamera, HasNoIdentifiersFromAParent) {
  walk(kMarker + kNextParent + kVendor + kProduct);
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, HasNoIdentifiersFromBeforeItsPort) {
  walk(kVendor + kProduct + kMarker);
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, HasTheFirstIdentifiersOfTheBlock) {
  walk(kMarker + kVendor + "    ATTRS{idVendor}==\"ffff\"\n" + kProduct + "    ATTRS{idProduct}==\"ffff\"\n");
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, "046d:0825");
}

TEST_F(ACamera, WhoseBlockHoldsTheWordLookingIsReadUpToThere) {
  walk(kMarker + "    ATTRS{product}==\"Good looking\"\n" + kVendor + kProduct);
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, IsFoundByItsWholePortName) {
  walk("    KERNELS==\"1-1.2:1.0\"\n    KERNELS==\"1-1.21\"\n    KERNELS==\"1-1\"\n" + kVendor + kProduct);
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, OfAPortWithoutATerminatorIsNotFound) {
  memset(device.usbslot, 'x', sizeof device.usbslot);
  device.plugged = 0;  // whoever reads on finds the end of the text here
  walk("    KERNELS==\"" + std::string(128, 'x') + "\"\n" + kVendor + kProduct);
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, OfTheLongestPortIsFound) {
  device = lookupRecord(2, std::string(127, 'x'));
  walk("    KERNELS==\"" + std::string(127, 'x') + "\"\n" + kVendor + kProduct);
  EXPECT_EQ(pidvid(), 1);
}

TEST_F(ACamera, IsNotFoundWhenItsIdentifiersHaveNoValue) {
  walk(kMarker + "    ATTRS{idVendor}=\"046d\"\n");
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, IsNotAskedForWithAnUnterminatedPort) {
  memset(device.usbslot, '1', sizeof device.usbslot);
  EXPECT_EQ(pidvid(), 0);
  EXPECT_EQ(frontEndType(), -1);
  EXPECT_EQ(text, "");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(ACamera, IsAskedForNothingWithoutARecordOrAPlaceForTheAnswer) {
  char out[16] = "kept";
  EXPECT_EQ(find_pidvid(nullptr, out), 0);
  EXPECT_EQ(find_pidvid(&device, nullptr), 0);
  EXPECT_EQ(get_fetypeid(nullptr, out), -1);
  EXPECT_EQ(get_fetypeid(&device, nullptr), -1);
  EXPECT_EQ(get_pcibridgePath(2, nullptr), 0);
  EXPECT_STREQ(out, "kept");
  EXPECT_THAT(host.journal.lines(), IsEmpty());
}

TEST_F(ACamera, WithoutAWalkHasNoIdentifiers) { EXPECT_EQ(pidvid(), 0); }

TEST_F(ACamera, HasNoIdentifiersWhenTheCommandCannotStart) {
  host.commands.cannotStart(walkCommand(2));
  EXPECT_EQ(pidvid(), 0);
}

TEST_F(ACamera, OfANegativeNodeIsAskedForByThatNumber) {
  device.node = -1;
  EXPECT_EQ(pidvid(), 0);
  EXPECT_THAT(host.journal.commands(), ElementsAre("/sbin/udevadm info --name=/dev/video-1 --attribute-walk"));
}

TEST_F(ACamera, WithIdentifiersOfFifteenCharactersHasThemWhole) {
  walk(kMarker + "    ATTRS{idVendor}==\"1234567\"\n    ATTRS{idProduct}==\"7654321\"\n");
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, "1234567:7654321");
}

TEST_F(ACamera, WithLongerIdentifiersHasThemCut) {
  walk(kMarker + "    ATTRS{idVendor}==\"" + std::string(200, 'v') + "\"\n" + kProduct);
  EXPECT_EQ(pidvid(), 1);
  EXPECT_EQ(text, std::string(15, 'v'));
}

TEST_F(ACamera, OfAKnownTypeHasThatType) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "1111:2222=1\n046d:0825 = \"3\" \n046d:0825=4\n");
  EXPECT_EQ(frontEndType(), 1);
  EXPECT_EQ(text, "3");
}

TEST_F(ACamera, IsAskedForBeforeTheTypesAreRead) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "046d:0825=3\n");
  frontEndType();
  EXPECT_THAT(host.journal.lines(),
              ElementsAre("popen " + walkCommand(2), "pclose " + walkCommand(2), std::string("fopen ") + kFrontEndFile,
                          std::string("fclose ") + kFrontEndFile));
}

TEST_F(ACamera, IsFoundAnywhereInALineOfTheTypes) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "x046d:0825y=7=8\n");
  EXPECT_EQ(frontEndType(), 1);
  EXPECT_EQ(text, "7=8");
}

TEST_F(ACamera, WhoseLineHasNoEqualsSignHasNoType) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "046d:0825\n046d:0825=3\n");
  EXPECT_EQ(frontEndType(), -1);
  EXPECT_EQ(text, "");
}

TEST_F(ACamera, ThatNoLineNamesHasNoType) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "046d:0826=3\n");
  EXPECT_EQ(frontEndType(), -1);
}

TEST_F(ACamera, WithoutATableHasNoType) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  EXPECT_EQ(frontEndType(), -1);
}

TEST_F(ACamera, WithoutIdentifiersHasNoTypeAndReadsNoTable) {
  host.files.write(kFrontEndFile, "046d:0825=3\n");
  EXPECT_EQ(frontEndType(), -1);
  EXPECT_THAT(host.journal.only({"fopen"}), IsEmpty());
}

TEST_F(ACamera, WithATypeOfFifteenCharactersHasItWhole) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "046d:0825=" + std::string(15, 't') + "\n");
  EXPECT_EQ(frontEndType(), 1);
  EXPECT_EQ(text, std::string(15, 't'));
}

TEST_F(ACamera, WithALongerTypeHasItCut) {
  host.camera(2, "1-1.2").ids("046d", "0825");
  host.files.write(kFrontEndFile, "046d:0825=" + std::string(200, 't') + "\n");
  EXPECT_EQ(frontEndType(), 1);
  EXPECT_EQ(text, std::string(15, 't'));
}

class ANode : public ContractTest {
 protected:
  int bridgePath() {
    std::string out = std::string(256, '\0') + "###";
    const int result = get_pcibridgePath(2, out.data());
    EXPECT_EQ(out.substr(256), "###");
    path = out.c_str();
    return result;
  }
  int bridgePathFrom(const std::string &output) {
    host.commands.prints(deviceLineCommand(2), output);
    return bridgePath();
  }
  bool behindBridgeBy(const std::string &output) {
    host.commands.prints(classCommand(2), output);
    return isPCIbridge(2) == 1;
  }

  std::string path;
};

TEST_F(ANode, IsBehindABridgeByItsBaseClass) {
  EXPECT_TRUE(behindBridgeBy("    ATTRS{class}==\"0x0c0330\"\n    ATTRS{class}==\"0x060400\"\n"));
  EXPECT_THAT(host.journal.lines(), ElementsAre("popen /sbin/udevadm info -a -n /dev/video2 | grep '{class}'",
                                                "pclose /sbin/udevadm info -a -n /dev/video2 | grep '{class}'"));
}

TEST_F(ANode, WithOtherClassesOnlyIsNotBehindABridge) {
  EXPECT_FALSE(behindBridgeBy("    ATTRS{class}==\"0x0c0330\"\n    ATTRS{class}==\"0x010601\"\n"));
}

TEST_F(ANode, WithoutClassesIsNotBehindABridge) { EXPECT_FALSE(behindBridgeBy("")); }

TEST_F(ANode, IsNotBehindABridgeWhenTheCommandCannotStart) {
  host.commands.cannotStart(classCommand(2));
  EXPECT_EQ(isPCIbridge(2), 0);
}

TEST_F(ANode, HasThePathOfItsController) {
  EXPECT_EQ(bridgePathFrom("  looking at device '/devices/pci0000:00/0000:00:1c.0/0000:03:00.0/usb3/3-1/3-1:1.0/"
                           "video4linux/video0':\n"),
            1);
  EXPECT_EQ(path, "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0");
}

TEST_F(ANode, IsAskedForItsPathWithOneCommandThatIsClosed) {
  bridgePath();
  EXPECT_THAT(host.journal.lines(), ElementsAre("popen /sbin/udevadm info -a -n /dev/video2 | grep 'looking at device'",
                                                "pclose /sbin/udevadm info -a -n /dev/video2 | grep 'looking at "
                                                "device'"));
}

TEST_F(ANode, HasThePathUpToTheFirstUsb) {
  EXPECT_EQ(bridgePathFrom("  looking at device '/devices/platform/f1058000.usb/usb2/2-1':\n"), 1);
  EXPECT_EQ(path, "/devices/platform/f1058000");
}

TEST_F(ANode, WithoutUsbHasNoPath) {
  EXPECT_EQ(bridgePathFrom("  looking at device '/devices/platform/camera/video4linux/video2':\n"), 0);
  EXPECT_EQ(path, "");
}

TEST_F(ANode, WithoutDevicesHasNoPath) { EXPECT_EQ(bridgePathFrom("  looking at '/pci0000:00/usb3/3-1':\n"), 0); }

TEST_F(ANode, IsReadFromTheFirstLineOnly) {
  EXPECT_EQ(bridgePathFrom("  looking at device '/devices/platform/camera':\n  looking at device '/devices/a/usb1':\n"),
            0);
}

TEST_F(ANode, WithoutALineHasNoPath) { EXPECT_EQ(bridgePath(), 0); }

TEST_F(ANode, HasNoPathWhenTheCommandCannotStart) {
  host.commands.cannotStart(deviceLineCommand(2));
  EXPECT_EQ(bridgePath(), 0);
}

TEST_F(ANode, WithALineLongerThanTheBufferIsReadUpToThere) {
  const std::string long_part(300, 'p');
  EXPECT_EQ(bridgePathFrom("  looking at device '/devices/" + long_part + "/usb3/3-1':\n"), 0);
}

TEST_F(ANode, WithItsPartsInNoUsefulPlaceHasNoPath) {
  for (const char *line : {"usb/devices/x\n", "devices/x/usb1\n", "usb\n", "devices\n"}) {
    EXPECT_EQ(bridgePathFrom(line), 0) << line;
    EXPECT_EQ(path, "") << line;
  }
}

class APortSwitch : public ContractTest {
 protected:
  int stateOf(const std::string &slot) {
    void *handle = nullptr;
    EXPECT_EQ(xmlcfg_open(0, kChannelFile, &handle), 1);
    host.journal.clear();
    const int state = get_switch_state(handle, slot.c_str());
    EXPECT_THAT(host.journal.lines(), IsEmpty());
    xmlcfg_close(handle, 0);
    return state;
  }
};

TEST_F(APortSwitch, ThatNoChannelRemembersIsOn) { EXPECT_EQ(stateOf("3-1"), 1); }

TEST_F(APortSwitch, OfNoFileOrNoPortIsOn) {
  host.channel(0).slot("3-1").slotSwitch(0);
  EXPECT_EQ(get_switch_state(nullptr, "3-1"), 1);
  void *handle = nullptr;
  xmlcfg_open(0, kChannelFile, &handle);
  EXPECT_EQ(get_switch_state(handle, nullptr), 1);
  xmlcfg_close(handle, 0);
}

TEST_F(APortSwitch, IsAsItsChannelRemembers) {
  host.channel(0).slot("3-0").slotSwitch(0);
  host.channel(9).slot("3-9").slotSwitch(0);
  EXPECT_EQ(stateOf("3-0"), 0);
  EXPECT_EQ(stateOf("3-9"), 0);
}

TEST_F(APortSwitch, IsTakenFromTheFirstChannelThatStoresIt) {
  host.channel(1).slot("3-1").slotSwitch(-1);
  host.channel(2).slot("3-1").slotSwitch(0);
  host.channel(3).slot("3-1").slotSwitch(1);
  EXPECT_EQ(stateOf("3-1"), 0);
}

TEST_F(APortSwitch, ThatItsChannelDoesNotStoreIsOn) {
  host.channel(1).slot("3-1");
  EXPECT_EQ(stateOf("3-1"), 1);
}

TEST_F(APortSwitch, IsFoundByTheWholePortName) {
  host.channel(1).slot("3-1.2").slotSwitch(0);
  host.channel(2).slot("3-").slotSwitch(0);
  EXPECT_EQ(stateOf("3-1"), 1);
}

TEST_F(APortSwitch, OfAnyOtherValueIsGivenAsItIs) {
  host.channel(1).slot("3-1").slotSwitch(7);
  EXPECT_EQ(stateOf("3-1"), 7);
}

TEST_F(APortSwitch, OfTheLongestPortNameIsFound) {
  host.channel(1).slot(std::string(127, '1')).slotSwitch(0);
  EXPECT_EQ(stateOf(std::string(127, '1')), 0);
}

TEST_F(APortSwitch, OfAStoredNameThatFillsTheBufferIsNotMistakenForALongerOne) {
  host.channel(1).slot(std::string(128, '1')).slotSwitch(0);
  EXPECT_EQ(stateOf(std::string(128, '1')), 1);
}

}  // namespace
}  // namespace contract
