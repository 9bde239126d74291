// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Random days on which the library does what a plain model of it does.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "random_day.h"
#include "thoroughness.h"

namespace model {
namespace {

constexpr int kOperationsADay = 100;
#ifdef USBDEV_FEWER_CASES
constexpr int kDaysInTests = 50;
#else
constexpr int kDaysInTests = 200;
#endif

unsigned firstSeed() {
  const char *seed = std::getenv("USBDEV_SEED");
  return seed == nullptr ? 1 : static_cast<unsigned>(std::strtoul(seed, nullptr, 10));
}

TEST(ARandomDay, IsTheSameInTheLibraryAndInTheModel) {
  const int days = torture::times(kDaysInTests, 12000);
  for (unsigned day = 0; day < static_cast<unsigned>(days); ++day) {
    const unsigned seed = firstSeed() + day;
    const History history = randomHistory(seed, kOperationsADay);
    if (differenceIn(history).empty()) continue;
    FAIL() << "USBDEV_SEED=" << seed << "\n" << differenceIn(shortest(history));
  }
  torture::report("model: " + std::to_string(days * kOperationsADay) + " operations, 0 differences");
}

}  // namespace
}  // namespace model
