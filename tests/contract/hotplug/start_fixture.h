// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A host at start-up, with cameras and sound cards under their drivers.
#pragma once

#include <string>

#include "contract_test.h"

namespace contract {

inline constexpr char kCameraList[] = "/bin/ls /sys/bus/usb/drivers/uvcvideo | grep \\: | /bin/awk '{print $1}'";
inline constexpr char kCardList[] = "/bin/ls /sys/bus/usb/drivers/snd-usb-audio | grep \\: | /bin/awk '{print $1}'";

class AStart : public ContractTest {
 protected:
  AStart() { host.commands.allowInsideCriticalSection(); }  // the scans and the record update hold the lock

  // A camera under its driver; its second interface carries no node.
  void camera(const std::string &slot, int node, const std::string &name) {
    cameras_ += slot + ":1.0\n" + slot + ":1.1\n";
    host.commands.prints(kCameraList, cameras_);
    const std::string number = std::to_string(node);
    host.commands.prints("/bin/ls /sys/bus/usb/drivers/uvcvideo/" + slot + ":1.0/video4linux | /bin/awk '{print $1}'",
                         "video" + number + "\n");
    host.files.write("/sys/class/video4linux/video" + number + "/name", name + "\n");
    host.camera(node, slot).listing(Listing().format("MJPG").size(640, 480).rate("30.000").text());
  }

  void card(const std::string &slot, int number, const std::string &name) {
    cards_ += slot + ":1.2\n";
    host.commands.prints(kCardList, cards_);
    host.commands.prints("/bin/ls /sys/bus/usb/drivers/snd-usb-audio/" + slot + ":1.2/sound | /bin/awk '{print $1}'",
                         "card" + std::to_string(number) + "\n");
    host.sound.card(number, 1, 1, 1, name);
  }

  HostChannel configured(int number, const std::string &slot, const std::string &name) {
    return host.channel(number).exists(1).slot(slot).name(name);
  }

  std::string key(int number, const std::string &name) { return host.channel(number).get(name); }

 private:
  std::string cameras_;
  std::string cards_;
};

}  // namespace contract
