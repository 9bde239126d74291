// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Why the machine keeps a camera from streaming: its USB port, its node, other programs, and what a stream was refused.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "machine/usb_tree.h"
#include "machine/video_node.h"
#include "reason/reason.h"

namespace usbdevctl {

/// A camera as the library knows it.
struct CameraPlace {
  std::string port;
  std::optional<int> node;
  std::optional<int> profile;
  bool attached = true;
  bool streams = false;  // according to the configuration
};

/// What was found out about a camera on the machine.
struct MachineFacts {
  bool device_there = true;
  bool asleep = false;  // although it was to be opened
  bool authorized = true;
  bool port_disabled = false;
  int over_current = 0;  // how often since the start
  bool has_node = true;  // if it is a camera
  NodeState node;
  NodeHolders holders;  // asked for if the node is busy
  std::string failure;  // the last of its stream
  bool disk_full = false;
  int bus_speed = 0;                      // Mbit/s
  std::vector<Reservation> reservations;  // asked for if bandwidth is missing
  std::optional<std::string> twin;
  bool has_serial = false;
  std::string user;  // that runs this program
};

class Machine {
 public:
  explicit Machine(std::string root = "") : files_(std::move(root)), usb_(files_) {}

  /// Whether there is a kernel that knows devices. A simulated host has none; of it only the buses are known.
  bool isReal() const { return files_.exists("/sys/kernel"); }

  const UsbTree &usb() const { return usb_; }

  MachineFacts facts(const CameraPlace &camera) const;

  /// None on a simulated host, or if nothing is wrong.
  Reasons reasons(const CameraPlace &camera) const;

 private:
  void addPortFacts(MachineFacts &facts, const std::string &port) const;
  void addNodeFacts(MachineFacts &facts, const std::string &node, bool streams) const;
  void addStreamFacts(MachineFacts &facts, const CameraPlace &camera) const;

  KernelFiles files_;
  UsbTree usb_;
};

/// The reasons that the facts are. Whatever makes the others meaningless comes alone.
Reasons machineReasons(const CameraPlace &camera, const MachineFacts &facts);

/// Whether a reason means that the camera's node cannot be asked for anything.
bool hidesCamera(const Reason &reason);

}  // namespace usbdevctl
