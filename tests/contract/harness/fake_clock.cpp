// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_clock.h"

#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace contract {

FakeClock::~FakeClock() {
  if (!isStopped()) return;
  unsetenv("TZ");
  tzset();
}

void FakeClock::stopAt(const std::string &moment, const char *zone) {
  tm parts{};
  std::istringstream text(moment);
  text >> std::get_time(&parts, "%Y-%m-%d %H:%M:%S");
  if (text.fail()) throw std::invalid_argument("not a moment: " + moment);
  setenv("TZ", zone, 1);
  tzset();
  moment_ = timegm(&parts);
}

}  // namespace contract
