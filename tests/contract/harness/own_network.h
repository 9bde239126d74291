// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A network of the test's own, for tests of real sockets.
#pragma once

#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace contract {

// Leaves the machine's network for one that has a loopback device only; as root or as an ordinary user.
inline bool enterNetworkOfItsOwn() {
  if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
  const int control = socket(AF_INET, SOCK_DGRAM, 0);
  ifreq loopback{};
  memcpy(loopback.ifr_name, "lo", sizeof "lo");
  loopback.ifr_flags = IFF_UP;
  const bool up = ioctl(control, SIOCSIFFLAGS, &loopback) == 0;
  close(control);
  return up;
}

}  // namespace contract
