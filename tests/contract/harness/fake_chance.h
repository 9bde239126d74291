// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The random numbers, which a test may fix.
#pragma once

#include <atomic>

namespace contract {

struct FakeChance {
  std::atomic<int> random{-1};    // what rand() gives; -1 = as ever
  std::atomic<int> seedings{0};   // calls of srand()
  std::atomic<unsigned> seed{0};  // the last one's argument
};

}  // namespace contract
