// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hostinfo/timeout_log.h"

#include <sys/shm.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/channel_keys.h"

namespace usbdev {
namespace {

constexpr key_t kSegmentKey = 1519;
using Counters = std::uint32_t[kProfiles];
static_assert(sizeof(Counters) == 16);

}  // namespace

int findTimeoutCounters() {
  const int found = shmget(kSegmentKey, 0, 0);
  return found != -1 ? found : shmget(kSegmentKey, sizeof(Counters), IPC_CREAT | 0666);
}

void *attachTimeoutCounters(int id) {
  void *const address = shmat(id, nullptr, 0);
  return reinterpret_cast<std::intptr_t>(address) == -1 ? nullptr : address;
}

void clearTimeoutCounters(void *counters) { std::memset(counters, 0, sizeof(Counters)); }

bool countTimeout(int profile) {
  const int segment = findTimeoutCounters();
  if (segment == -1) {
    std::perror("shmget");
    return false;
  }
  void *const address = attachTimeoutCounters(segment);
  if (address == nullptr) {
    std::perror("shmat");
    return false;
  }
  // Intended: A count may be lost.
  static_cast<std::uint32_t *>(address)[profile] += 1;
  shmdt(address);
  return true;
}

}  // namespace usbdev
