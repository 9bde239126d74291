// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// time and sleep of the C library, over the clock of the current host.
#include <unistd.h>

#include <ctime>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

time_t time(time_t *out) noexcept {
  static auto *const real = realFunction<time_t(time_t *)>("time");
  Host *host = Host::current();
  if (host == nullptr || !host->clock.isStopped()) return real(out);
  const time_t now = host->clock.moment();
  if (out != nullptr) *out = now;
  return now;
}

// Passes no time, but leaves its line.
unsigned sleep(unsigned seconds) {
  static auto *const real = realFunction<unsigned(unsigned)>("sleep");
  Host *host = Host::current();
  if (host == nullptr) return real(seconds);
  host->journal.add("sleep " + std::to_string(seconds));
  return static_cast<unsigned>(host->calls.failure("sleep").value_or(0));
}

}  // extern "C"
