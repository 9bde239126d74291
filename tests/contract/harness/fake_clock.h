// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's clock: the real one until a test stops it.
#pragma once

#include <atomic>
#include <ctime>
#include <string>

namespace contract {

class FakeClock {
 public:
  FakeClock() = default;
  ~FakeClock();
  FakeClock(const FakeClock &) = delete;
  FakeClock &operator=(const FakeClock &) = delete;

  // Stops at a moment of UTC, as in "2024-03-05 08:15:00". The host's time zone is UTC, or the given one: "XXX-5:30" is
  // five and a half hours ahead.
  void stopAt(const std::string &moment, const char *zone = "UTC0");

  bool isStopped() const { return moment_ != kGoes; }
  // Where it stands.
  time_t moment() const { return moment_; }

 private:
  static constexpr time_t kGoes = -1;
  std::atomic<time_t> moment_{kGoes};
};

}  // namespace contract
