// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which of two stored moments is the earlier one.
#include "devices/creation_time.h"

#include <gtest/gtest.h>

#include <string>

namespace usbdev {
namespace {

TEST(TheEarlierTime, HasTheSmallerDate) {
  EXPECT_EQ(earlierOf("2024-03-04 23:59:59", "2024-03-05 00:00:00"), Earlier::first);
  EXPECT_EQ(earlierOf("2024-03-05 00:00:00", "2024-03-04 23:59:59"), Earlier::second);
}

TEST(TheEarlierTime, OfOneDateHasTheSmallerTime) {
  EXPECT_EQ(earlierOf("2024-03-05 08:14:59", "2024-03-05 08:15:00"), Earlier::first);
  EXPECT_EQ(earlierOf("2024-03-05 08:15:00", "2024-03-05 08:14:59"), Earlier::second);
}

TEST(TheEarlierTime, IsNeitherOfTwoInOneSecond) {
  EXPECT_EQ(earlierOf("2024-03-05 08:15:00", "2024-03-05 08:15:00"), Earlier::neither);
}

TEST(TheEarlierTime, IsTheFirstWhereATextIsNotATime) {
  EXPECT_EQ(earlierOf("", "2024-03-05 08:15:00"), Earlier::first);
  EXPECT_EQ(earlierOf("2024-03-05 08:15:00", ""), Earlier::first);
  EXPECT_EQ(earlierOf("2024-03-05", "2023-03-05 08:15:00"), Earlier::first);
  EXPECT_EQ(earlierOf("2024-03-05", "0 0"), Earlier::first);
}

TEST(TheEarlierTime, IsReadWithoutAnyOfItsColons) {
  EXPECT_EQ(earlierOf("2024-03-05 :08:15:00", "2024-03-05 08:14:59"), Earlier::second);
}

TEST(TheEarlierTime, IsReadFromTheFirst127Bytes) {
  const std::string date = "2024-03-05" + std::string(116, '-');
  EXPECT_EQ(earlierOf((date + " 08:15:00").c_str(), "2024-01-01 00:00:00"), Earlier::second);
  EXPECT_EQ(earlierOf((date + "- 08:15:00").c_str(), "2024-01-01 00:00:00"), Earlier::first);
}

}  // namespace
}  // namespace usbdev
