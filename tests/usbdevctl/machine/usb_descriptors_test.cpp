// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "machine/usb_descriptors.h"

#include <gtest/gtest.h>

#include "machine/fake_machine.h"

namespace {

using usbdevctl::reservedBits;

constexpr std::int64_t kGreedy = 3LL * 1024 * 8000 * 8;

std::string withEndpoint(const std::string &endpoint) {
  const std::string all = greedyDescriptors();
  return all.substr(0, all.size() - 7) + endpoint;
}

TEST(TheReservedBandwidth, IsThatOfTheSettingInUse) {
  EXPECT_EQ(reservedBits(greedyDescriptors(), 1, 1, 480), kGreedy);
  EXPECT_EQ(reservedBits(greedyDescriptors(), 1, 0, 480), 0);
  EXPECT_EQ(reservedBits(greedyDescriptors(), 0, 1, 480), 0);
}

TEST(TheReservedBandwidth, OfABulkEndpointIsNothing) {
  EXPECT_EQ(reservedBits(withEndpoint(std::string("\x07\x05\x81\x02\x00\x02\x01", 7)), 1, 1, 480), 0);
}

TEST(TheReservedBandwidth, DependsOnTheInterval) {
  const std::string every_eighth("\x07\x05\x81\x05\x00\x14\x04", 7);
  EXPECT_EQ(reservedBits(withEndpoint(every_eighth), 1, 1, 480), kGreedy / 8);
}

TEST(TheReservedBandwidth, AtFullSpeedIsCountedInFrames) {
  const std::string packet_of_1023("\x07\x05\x81\x05\xff\x03\x01", 7);
  EXPECT_EQ(reservedBits(withEndpoint(packet_of_1023), 1, 1, 12), 1023LL * 1000 * 8);
}

TEST(TheReservedBandwidth, AtSuperspeedIsThatOfTheCompanion) {
  const std::string endpoint("\x07\x05\x81\x05\x00\x04\x01", 7);
  const std::string companion("\x06\x30\x02\x00\x00\x30", 6);
  EXPECT_EQ(reservedBits(withEndpoint(endpoint + companion), 1, 1, 5000), 0x3000LL * 8000 * 8);
}

TEST(TheReservedBandwidth, OfCutOrDamagedDescriptorsIsReadAsFarAsTheyMakeSense) {
  const std::string all = greedyDescriptors();
  for (std::size_t size = 0; size < all.size(); ++size) {
    EXPECT_EQ(reservedBits(all.substr(0, size), 1, 1, 480), 0) << size;
  }
  EXPECT_EQ(reservedBits(std::string(64, '\0'), 1, 1, 480), 0);
  EXPECT_EQ(reservedBits(std::string("\x02\x05\x02\x05", 4), 0, 0, 480), 0);
  EXPECT_EQ(reservedBits(all + all, 1, 1, 480), kGreedy) << "a second configuration is not in use";
}

}  // namespace
