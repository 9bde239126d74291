// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The stored switch of a port.
#include "devices/identification.h"

#include <gtest/gtest.h>

#include "plain_config.h"

namespace usbdev {
namespace {

TEST(AStoredSwitch, IsOnWhereNoChannelHasOneForThePort) {
  PlainConfig config = {{"ch0/usbslot", "3-1"}, {"ch1/usbslot", "3-2"}, {"ch1/slot_switch", "0"}};
  EXPECT_EQ(storedSwitch(opened(config), "3-1"), 1);
  EXPECT_EQ(storedSwitch(opened(config), "3-9"), 1);
}

TEST(AStoredSwitch, IsThatOfTheFirstChannelThatHasOneForThePort) {
  PlainConfig config = {{"ch0/usbslot", "3-1"},
                        {"ch4/usbslot", "3-1"},
                        {"ch4/slot_switch", "0"},
                        {"ch9/usbslot", "3-1"},
                        {"ch9/slot_switch", "1"}};
  EXPECT_EQ(storedSwitch(opened(config), "3-1"), 0);
}

TEST(AStoredSwitch, IsGivenAsItWasStored) {
  PlainConfig config = {{"ch9/usbslot", "3-1"}, {"ch9/slot_switch", "7"}};
  EXPECT_EQ(storedSwitch(opened(config), "3-1"), 7);
}

}  // namespace
}  // namespace usbdev
