// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// rand and srand of the C library, over the current host.
#include <cstdlib>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

int rand(void) noexcept {
  static auto *const real = realFunction<int()>("rand");
  Host *host = Host::current();
  return host == nullptr || host->chance.random == -1 ? real() : host->chance.random.load();
}

void srand(unsigned seed) noexcept {
  static auto *const real = realFunction<void(unsigned)>("srand");
  if (Host *host = Host::current()) {
    host->chance.seed = seed;
    ++host->chance.seedings;
  }
  real(seed);
}

}  // extern "C"
