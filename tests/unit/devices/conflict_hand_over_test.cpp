// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a caller's code asks a hand-over to do.
#include "devices/conflict_hand_over.h"

#include <gtest/gtest.h>

namespace usbdev {
namespace {

TEST(ACallersCode, Of0And1And4HandsOver) {
  EXPECT_EQ(handOverModeOf(0), HandOverMode::hand_over);
  EXPECT_EQ(handOverModeOf(1), HandOverMode::on_plug);
  EXPECT_EQ(handOverModeOf(4), HandOverMode::and_park);
}

TEST(ACallersCode, OfAnythingElseOnlyReleases) {
  for (const int code : {-1, 2, 3, 5, 6, 7, 99}) EXPECT_EQ(handOverModeOf(code), HandOverMode::release_only) << code;
}

}  // namespace
}  // namespace usbdev
