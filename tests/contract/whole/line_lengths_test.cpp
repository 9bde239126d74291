// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How much of a line the library reads at once: each reader takes what ends just within its limit, and cuts what ends
// one byte later.
#include <string>

#include "contract_test.h"
#include "encoding_host.h"

namespace contract {
namespace {

using testing::Contains;
using testing::Not;

// A text that ends at this byte of its line.
std::string endingAt(size_t byte, const std::string &text) { return std::string(byte - text.size(), ' ') + text; }

class ALine : public ContractTest {
 protected:
  // The USB ids or the front-end type of a camera on node 2 in port 1-1.
  std::string ids(const std::string &walk) {
    host.commands.prints(walkCommand(2), "KERNELS==\"1-1\"\n" + walk + "\n");
    char answer[16] = "";
    find_pidvid(&camera, answer);
    return answer;
  }
  std::string type(const std::string &entry) {
    host.camera(2, "1-1").ids("046d", "0825");
    host.files.write("/etc/config/.usbFECam.dat", entry + "\n");
    char answer[16] = "(none)";
    get_fetypeid(&camera, answer);
    return answer;
  }
  int vendorToKill(const std::string &walk) {
    host.commands.prints(walkCommand(2), "ATTRS{idVendor}==\"0603\"\n" + walk + "\n");
    return vl_force_kill_v4l2_ctl(2);
  }
  int isBridge(const std::string &line) {
    host.commands.prints(classCommand(2), line + "\n");
    return isPCIbridge(2);
  }
  std::string bridge(const std::string &line) {
    host.commands.prints(deviceLineCommand(2), line + "\n");
    char path[256] = "";
    get_pcibridgePath(2, path);
    return path;
  }
  int height(const std::string &size) {
    host.commands.prints(listingCommand(2), "Index: 0\nPixel Format: 'MJPG'\n" + size + "\n");
    int over60 = 0;
    _usbfmt_des table[8];
    EXPECT_EQ(mn_get_usbchn_fmts(2, table, &over60), 1);
    return table[0].res[0].height;
  }
  Lines killed(const std::string &process) {
    host.commands.prints(queryProcessCommand(2), process + "\n");
    height("Size: Discrete 1x1");
    return host.journal.only({"system"});
  }
  int mayEncode() {
    int result = -7;
    validate_hwenc(&result);
    return result;
  }
  int isLimited(const std::string &processor, const std::string &setting) {
    host.commands.does("/bin/cat /proc/cpuinfo | /bin/grep vendor_id > /tmp/vl_cpu.info",
                       [=] { host.files.write("/tmp/vl_cpu.info", processor + "\n"); });
    host.files.write("/etc/config/Tundrel.conf", setting + "\n");
    return AMDmodel_oneChannelLimited();
  }
  int isSupported(const std::string &line) {
    host.files.write("/tmp/gpuinfo.type", line + "\n");
    int answer = -7;
    vl_check_HOS_halvane_support(&answer);
    return answer;
  }
  int panelPort(const std::string &line) {
    host.commands.prints("hwinfo_app --usb_get_port_id value='1-1'", line + "\n");
    return vl_HOS_CLI_usbid("1-1");
  }
  // The node of an interface, and the name of node 4.
  int node(const std::string &line) {
    host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/1-1:1.0/video4linux | /bin/awk '{print $1}'", line);
    host.files.write("/sys/class/video4linux/video4/name", "Camera");
    host.files.write("/sys/class/video4linux/video0/name", "Camera");
    int answer = -7;
    char name[256];
    EXPECT_EQ(get_video_info("1-1:1.0", &answer, name), 0);
    return answer;
  }
  std::string nameOfNode4(const std::string &line) {
    node("video4\n");
    host.files.write("/sys/class/video4linux/video4/name", line + "\n");
    int number = -7;
    char name[256] = "";
    EXPECT_EQ(get_video_info("1-1:1.0", &number, name), 0);
    return name;
  }
  std::string hash(const std::string &uuid) {
    host.commands.prints("/bin/cat /proc/sys/kernel/random/uuid", uuid + "\n");
    char answer[33] = "";
    generate_hash(answer);
    return answer;
  }

  _usbdev_des camera{1, 2, "1-1", 1, "Camera"};
};

TEST_F(ALine, OfADeviceWalkIsReadUpToByte255) {
  const std::string product = "ATTRS{idProduct}==\"0825\"\n";
  EXPECT_EQ(ids(product + endingAt(255, "ATTRS{idVendor}==046d")), "046d:0825");
  EXPECT_EQ(ids(product + endingAt(256, "ATTRS{idVendor}==046d")), "046:0825");
  EXPECT_EQ(vendorToKill(endingAt(255, "ATTRS{idProduct}==8612")), 1);
  EXPECT_EQ(vendorToKill(endingAt(256, "ATTRS{idProduct}==8612")), 0);
}

TEST_F(ALine, OfTheFrontEndListIsReadUpToByte255) {
  EXPECT_EQ(type(endingAt(255, "046d:0825=34")), "34");
  EXPECT_EQ(type(endingAt(256, "046d:0825=34")), "3");
}

TEST_F(ALine, OfTheDeviceClassesIsReadUpToByte255) {
  EXPECT_EQ(isBridge(endingAt(255, "0x06")), 1);
  EXPECT_EQ(isBridge(endingAt(256, "0x06")), 0);
}

TEST_F(ALine, OfADevicesPathIsReadUpToByte255) {
  EXPECT_EQ(bridge(endingAt(255, "/devices/pci/usb")), "/devices/pci");
  EXPECT_EQ(bridge(endingAt(256, "/devices/pci/usb")), "");
}

TEST_F(ALine, OfAFormatsListingIsReadUpToByte255) {
  EXPECT_EQ(height(endingAt(255, "Size: Discrete 640x480")), 480);
  EXPECT_EQ(height(endingAt(256, "Size: Discrete 640x480")), 48);
}

TEST_F(ALine, OfAProcessListIsReadUpToByte127) {
  EXPECT_THAT(killed(endingAt(127, "4711")), Contains("system kill 4711 &"));
  EXPECT_THAT(killed(endingAt(128, "4712")), Contains("system kill 471 &"));
}

TEST_F(ALine, OfTheGpuListIsReadUpToByte255) {
  allowEncoding(host);
  host.commands.prints(kGpuListCommand, std::string(254, 'G') + ":\n");
  mayEncode();
  EXPECT_THAT(host.journal.commands(), Contains("gpuinfo_app -s " + std::string(254, 'G')));
  host.journal.clear();
  host.commands.prints(kGpuListCommand, std::string(255, 'G') + ":\n");
  EXPECT_EQ(mayEncode(), 0);
  EXPECT_THAT(host.journal.commands(), Not(Contains(testing::StartsWith("gpuinfo_app -s"))));
}

TEST_F(ALine, OfTheGpusStateIsReadUpToByte255) {
  allowEncoding(host);
  host.commands.prints(kGpuStateCommand, endingAt(255, "driver_installed=1") + "\n");
  EXPECT_EQ(mayEncode(), 1);
  host.commands.prints(kGpuStateCommand, endingAt(256, "driver_installed=1") + "\n");
  EXPECT_EQ(mayEncode(), 0);
}

TEST_F(ALine, OfTheProcessorIsReadUpToByte255) {
  allowEncoding(host);
  host.files.write("/proc/cpuinfo", endingAt(255, "ARM") + "\n");
  EXPECT_EQ(mayEncode(), 0);
  host.files.write("/proc/cpuinfo", endingAt(256, "ARM") + "\n");
  EXPECT_EQ(mayEncode(), 1);
  EXPECT_EQ(isLimited(endingAt(255, "GenuineIntel"), "Internal Model=K41"), 0);
  EXPECT_EQ(isLimited(endingAt(256, "GenuineIntel"), "Internal Model=K41"), 1);
}

TEST_F(ALine, OfTheHostsSettingsIsReadUpToByte255) {
  EXPECT_EQ(isLimited("", endingAt(255, "Internal Model=K41")), 1);
  EXPECT_EQ(isLimited("", endingAt(256, "Internal Model=K41")), 0);
}

TEST_F(ALine, OfTheAddOnsStateIsReadUpToByte255) {
  EXPECT_EQ(isSupported(endingAt(255, "support=1")), 1);
  EXPECT_EQ(isSupported(endingAt(256, "support=1")), 0);
}

TEST_F(ALine, OfAPanelPortIsReadUpToByte255) {
  EXPECT_EQ(panelPort(endingAt(255, "12")), 12);
  EXPECT_EQ(panelPort(endingAt(256, "12")), 1);
}

TEST_F(ALine, OfAnInterfacesNodesIsReadUpToByte255) {
  EXPECT_EQ(node(endingAt(255, "video4")), 4);
  EXPECT_EQ(node(endingAt(256, "video4")), 0);
}

TEST_F(ALine, OfACamerasNameIsReadUpToByte255) {
  EXPECT_EQ(nameOfNode4(endingAt(255, "Camera")), "Camera");
  EXPECT_EQ(nameOfNode4(endingAt(256, "Camera")), "Camer");
}

TEST_F(ALine, OfANewIdentifierIsReadUpToByte254) {
  EXPECT_EQ(hash(std::string(222, '-') + std::string(32, 'a')), std::string(32, 'a'));
  EXPECT_EQ(hash(std::string(223, '-') + std::string(32, 'a')), std::string(31, 'a'));
}

}  // namespace
}  // namespace contract
