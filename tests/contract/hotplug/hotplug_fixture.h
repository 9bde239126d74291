// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A device event at port 1-1: unless a test changes that, a camera on node 2 that offers MJPEG is plugged in.
#pragma once

#include <cstring>
#include <string>

#include "contract_test.h"

namespace contract {

inline constexpr char kSlot[] = "1-1";
inline constexpr char kName[] = "HD Webcam";
inline constexpr char kNoSupportList[] = "/etc/config/.usbnosupportlist.dat";
inline constexpr char kFrontEndList[] = "/etc/config/.usbFECam.dat";

class HotplugTest : public ContractTest {
 protected:
  HotplugTest() {
    host.camera(2, kSlot).ids("046d", "0825").listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
    device.devtype = 1;
    device.node = 2;
    device.plugged = 1;
    place(kSlot, kName);
    memset(&report, '?', sizeof report);
  }

  void place(const std::string &slot, const std::string &name) {
    memset(device.usbslot, 0, sizeof device.usbslot);
    slot.copy(device.usbslot, sizeof device.usbslot);
    memset(device.devname, 0, sizeof device.devname);
    name.copy(device.devname, sizeof device.devname);
  }

  // The device is a sound card instead.
  void isCard(const std::string &name) {
    device.devtype = 0;
    place(kSlot, name);
  }

  // A channel that has had a camera before.
  HostChannel known(int number, int exists, int its_profile, const std::string &slot = kSlot,
                    const std::string &name = kName) {
    return host.channel(number).exists(exists).profile(its_profile).slot(slot).name(name).vnode(20 + number);
  }

  int plug() {
    device.plugged = 1;
    return call();
  }
  int pullOut() {
    device.plugged = 0;
    return call();
  }

  // What was written to a channel, as "key=value" in the order of writing.
  Lines writesTo(int number) const {
    const std::string section = "ch" + std::to_string(number) + "/";
    Lines chosen;
    for (const std::string &line : host.config.writes()) {
      if (line.rfind(section, 0) == 0) chosen.push_back(line.substr(section.size()));
    }
    return chosen;
  }

  bool isReportUntouched() const {
    return report.channel == 0x3F3F3F3F && report.profile == 0x3F3F3F3F &&
           std::string(report.profilename, sizeof report.profilename) == std::string(sizeof report.profilename, '?');
  }

  _usbdev_des device{};
  int profile = 77;
  std::string devname;
  int vnode = 77;
  _usbdev_conflict report;
  std::string message;

 private:
  int call() {
    OutputCapture output;
    std::string name = std::string(256, '?') + "###";
    const int result = mn_set_usbdev_hotplug(&device, &profile, name.data(), &vnode, &report);
    EXPECT_EQ(name.substr(256), "###");
    devname = name[0] == '?' ? "(untouched)" : name.c_str();
    message = output.text();
    return result;
  }
};

}  // namespace contract
