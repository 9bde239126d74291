// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The USB devices as the kernel reports them in /sys/bus/usb/devices. A device has the name of its port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "machine/kernel_files.h"

namespace usbdevctl {

/// A device that has reserved bandwidth of its bus, as a camera or a sound card does while it is used.
struct Reservation {
  std::string port;
  std::string product;
  std::int64_t bits = 0;  // a second
};

/// A bus, with how much of it its devices have reserved; in Mbit/s, rounded up.
struct Bus {
  int number = 0;
  int speed = 0;
  int reserved = 0;
};

/// Rounds up, because what is reserved in part is not nothing.
inline int megabits(std::int64_t bits) { return static_cast<int>((bits + 999'999) / 1'000'000); }

class UsbTree {
 public:
  explicit UsbTree(const KernelFiles &files) : files_(files) {}

  /// Whether the text is the name of a port, such as 3-1.2, and so part of a path.
  static bool isPort(const std::string &port);

  bool isThere(const std::string &port) const;
  std::string attribute(const std::string &port, const std::string &name) const;
  /// The path of an attribute's file.
  static std::string fileOf(const std::string &port, const std::string &attribute);

  /// The hub's own folder for the port; it is there without a device too.
  static std::string hubPort(const std::string &port);

  bool isCamera(const std::string &port) const;
  std::vector<std::string> cameras() const;

  /// Whether the camera has a video node.
  bool hasNode(const std::string &port) const;

  /// The speed of the device in Mbit/s.
  int speed(const std::string &port) const;

  /// Who has reserved bandwidth of the port's bus, without the device in the port itself.
  std::vector<Reservation> reservationsBeside(const std::string &port) const;

  /// All buses, in the order of their numbers.
  std::vector<Bus> buses() const;

  /// Another camera that only its port tells from this one.
  std::optional<std::string> twinOf(const std::string &port) const;

 private:
  std::vector<std::string> interfacesOf(const std::string &port) const;
  std::vector<std::string> portsOn(const std::string &bus) const;
  std::int64_t reservedBy(const std::string &port) const;
  bool areTwins(const std::string &port, const std::string &other) const;

  const KernelFiles &files_;
};

}  // namespace usbdevctl
