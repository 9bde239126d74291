// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "shared_memory.h"

#include <sys/shm.h>

#include <algorithm>
#include <cerrno>

#include "host.h"

using contract::Host;

namespace calls {
namespace {

unsigned counters[4];
bool exists = false;
int attachments = 0;

}  // namespace

void makeSegment() {
  exists = true;
  attachments = 0;
  std::fill_n(counters, 4, 5U);
}

void forgetSegment() {
  exists = false;
  attachments = 0;
  std::fill_n(counters, 4, 0U);
}

void leaveAttached() { --attachments; }

bool isAttached() { return attachments != 0; }

std::string countersText() {
  std::string text = exists ? "segment" : "no segment";
  for (const unsigned counter : counters) text += " " + std::to_string(counter);
  return text;
}

}  // namespace calls

extern "C" {

int shmget(key_t, size_t size, int) noexcept {
  if (const auto failure = Host::current()->calls.failure("shmget")) return *failure;
  if (size == 0 && !calls::exists) {
    errno = ENOENT;
    return -1;
  }
  calls::exists = true;
  return calls::kSegment;
}

void *shmat(int, const void *, int) noexcept {
  if (Host::current()->calls.failure("shmat")) return reinterpret_cast<void *>(-1);
  ++calls::attachments;
  return calls::counters;
}

int shmdt(const void *) noexcept {
  const auto failure = Host::current()->calls.failure("shmdt");
  --calls::attachments;
  return failure ? *failure : 0;
}

}  // extern "C"
