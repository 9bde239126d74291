// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which numbers are profiles and channels, and what a channel loses with its profile.
#include "core/profile_mapping.h"

#include <gtest/gtest.h>

#include "plain_config.h"

namespace usbdev {
namespace {

TEST(AProfile, IsANumberFrom0To3) {
  EXPECT_FALSE(isProfile(-1));
  EXPECT_TRUE(isProfile(0));
  EXPECT_TRUE(isProfile(3));
  EXPECT_FALSE(isProfile(4));
}

TEST(AChannel, IsANumberFrom0To9) {
  EXPECT_FALSE(isChannel(-1));
  EXPECT_TRUE(isChannel(0));
  EXPECT_TRUE(isChannel(9));
  EXPECT_FALSE(isChannel(10));
}

TEST(AChannel, LosesNameTimeAndLinkWithItsProfile) {
  PlainConfig config = {{"ch4/profile", "2"},
                        {"ch4/profilename", "Front door"},
                        {"ch4/createtime", "2024-03-05 08:15:00"},
                        {"ch4/hlspath", "abcdef"},
                        {"ch4/devname", "HD Webcam"}};
  writeUnbound(opened(config).channel(4));
  EXPECT_EQ(config, (PlainConfig{{"ch4/profile", "-1"},
                                 {"ch4/profilename", ""},
                                 {"ch4/createtime", ""},
                                 {"ch4/hlspath", ""},
                                 {"ch4/devname", "HD Webcam"}}));
}

}  // namespace
}  // namespace usbdev
