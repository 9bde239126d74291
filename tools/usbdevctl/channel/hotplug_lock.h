// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Only one device event or synchronisation may run at a time on a host: two would choose the same channel. Every
// program that calls the library for them takes this lock around the call.
#pragma once

#include <string>

namespace usbdevctl {

inline constexpr char kHotplugLockFile[] = "/var/lock/usbdev-hotplug.lock";

/// Held from construction, which waits until the lock is free, to destruction. Commands that the library runs do not
/// inherit it.
class HotplugLock {
 public:
  explicit HotplugLock(const std::string &file);
  ~HotplugLock();
  HotplugLock(const HotplugLock &) = delete;
  HotplugLock &operator=(const HotplugLock &) = delete;

  /// Empty while the lock is held.
  const std::string &error() const { return error_; }

 private:
  int file_;
  std::string error_;
};

}  // namespace usbdevctl
