// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/hotplug_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace usbdevctl {

namespace {

// A link in the file's place, in a folder that is open to all, would let others choose what is made.
constexpr int kHow = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;

bool waitFor(int file) {
  while (flock(file, LOCK_EX) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

}  // namespace

HotplugLock::HotplugLock(const std::string &file) : file_(open(file.c_str(), kHow, 0600)) {
  if (file_ < 0 || !waitFor(file_)) error_ = "cannot lock " + file + ": " + std::strerror(errno);
}

HotplugLock::~HotplugLock() {
  if (file_ >= 0) close(file_);
}

}  // namespace usbdevctl
