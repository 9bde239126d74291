// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A folder in which the files of a kernel are made up.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class FakeMachine {
 public:
  FakeMachine() {
    char folder[] = "/tmp/fake_machine.XXXXXX";
    root_ = mkdtemp(folder);
    std::filesystem::permissions(root_, std::filesystem::perms(0755));
  }
  ~FakeMachine() { std::filesystem::remove_all(root_); }
  FakeMachine(const FakeMachine &) = delete;
  FakeMachine &operator=(const FakeMachine &) = delete;

  const std::string &root() const { return root_; }

  void makeFolder(const std::string &name) const { std::filesystem::create_directories(root_ + name); }

  void write(const std::string &name, const std::string &content) const {
    makeFolder(name.substr(0, name.rfind('/')));
    std::ofstream(root_ + name, std::ios::binary) << content;
  }

  /// The link leads to the target as it is, which need not exist.
  void link(const std::string &target, const std::string &name) const {
    makeFolder(name.substr(0, name.rfind('/')));
    ASSERT_EQ(symlink(target.c_str(), (root_ + name).c_str()), 0);
  }

  /// An attribute of the USB device in the port.
  void set(const std::string &port, const std::string &attribute, const std::string &value) const {
    write("/sys/bus/usb/devices/" + port + "/" + attribute, value + "\n");
  }

  /// A camera at 480 Mbit/s with the node, on a machine with a kernel.
  void plug(const std::string &port, const std::string &product, const std::string &serial, int node) const {
    makeFolder("/sys/kernel");
    set(port, "product", product);
    set(port, "idVendor", "046d");
    set(port, "idProduct", "082d");
    set(port, "authorized", "1");
    set(port, "speed", "480");
    set(port, "power/runtime_status", "suspended");
    if (!serial.empty()) set(port, "serial", serial);
    set(port, port + ":1.0/bInterfaceClass", "0e");
    makeFolder("/sys/bus/usb/devices/" + port + "/" + port + ":1.0/video4linux/video" + std::to_string(node));
    set(port, port + ":1.1/bInterfaceClass", "0e");
    set(port, port + ":1.1/bInterfaceNumber", "01");
    set(port, port + ":1.1/bAlternateSetting", " 0");
    write("/dev/video" + std::to_string(node), "");
  }

 private:
  std::string root_;
};

/// Descriptors of a camera whose interface 1 has the alternate settings 0, without an endpoint, and 1, with an
/// isochronous one of three packets of 1,024 bytes a microframe.
inline std::string greedyDescriptors() {
  return std::string("\x12\x01\x00\x02\xef\x02\x01\x40\x6d\x04\x2d\x08\x00\x01\x01\x02\x00\x01", 18) +  // the device
         std::string("\x09\x02\x00\x00\x02\x01\x00\x80\xfa", 9) +  // its configuration
         std::string("\x09\x04\x01\x00\x00\x0e\x02\x00\x00", 9) +
         std::string("\x09\x04\x01\x01\x01\x0e\x02\x00\x00", 9) + std::string("\x07\x05\x81\x05\x00\x14\x01", 7);
}
