// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host's tools print about one camera.
#pragma once

#include <string>

#include "fake_commands.h"

namespace contract {

// The command texts, for tests that script or expect them one by one.
std::string walkCommand(int node);
std::string classCommand(int node);
std::string deviceLineCommand(int node);
std::string listingCommand(int node);
std::string queryProcessCommand(int node);

// Two USB controllers behind PCI bridges.
inline constexpr char kController[] = "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0";
inline constexpr char kOtherController[] = "/devices/pci0000:00/0000:00:1d.0/0000:04:00.0";

class HostCamera {
 public:
  HostCamera(FakeCommands &commands, int node, const std::string &slot)
      : commands_(commands), node_(node), slot_(slot) {}

  // Vendor and product as four hexadecimal digits each.
  HostCamera &ids(const std::string &vendor, const std::string &product);
  // What v4l2-ctl lists.
  HostCamera &listing(const std::string &text);
  // Behind a PCI bridge, with the controller at this path: "/devices/pci0000:00/0000:00:1c.0/0000:03:00.0".
  HostCamera &behindBridge(const std::string &controller);

 private:
  FakeCommands &commands_;
  int node_;
  std::string slot_;
};

// A formats listing as the host's v4l2-ctl prints it:
//   Listing().format("MJPG").size(1280, 720).rate("30.000").text()
class Listing {
 public:
  Listing &format(const std::string &code);
  Listing &size(int width, int height);
  Listing &rate(const std::string &fps);  // "30.000"
  std::string text() const;

 private:
  std::string text_ = "ioctl: VIDIOC_ENUM_FMT\n";
  int formats_ = 0;
};

}  // namespace contract
