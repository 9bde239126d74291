// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/availability.h"

#include <gtest/gtest.h>

#include "text_fields.h"

namespace {

using usbdevctl::Availability;
using usbdevctl::availabilityJson;
using usbdevctl::availabilityText;
using usbdevctl::canAssign;

Availability someAvailability() {
  Availability available;
  available.profiles = "0,2";
  _availinfo &offered = available.channels[3];
  offered.stream_type = 2;
  setField(offered.usbslot, "3-1");
  setField(offered.devname, "Cam\033");
  return available;
}

TEST(WhatIsFree, IsProfilesAndTheDevicesThatCanBeGivenOne) {
  EXPECT_EQ(availabilityText(someAvailability(), false),
            "profiles    0,2\n"
            "\n"
            "CHANNEL  PORT  DEVICE   STREAM\n"
            "      3  3-1   Cam\\x1b  video\n");
  EXPECT_EQ(availabilityJson(someAvailability()).line(),
            R"({"schema":1,"profiles":[0,2],"devices":[{"channel":3,"slot":"3-1","device":"Cam\u001b",)"
            R"("stream":"video"}]})"
            "\n");
}

TEST(WhatIsFree, MayBeNothing) {
  EXPECT_EQ(availabilityText({}, false), "profiles    none\ndevices     none\n");
  EXPECT_EQ(availabilityJson({}).line(), "{\"schema\":1,\"profiles\":[],\"devices\":[]}\n");
}

TEST(AnAssignment, NeedsAProfileAndADevice) {
  EXPECT_TRUE(canAssign(someAvailability()));
  Availability without_profile = someAvailability();
  without_profile.profiles = "";
  EXPECT_FALSE(canAssign(without_profile));
  Availability without_device = someAvailability();
  without_device.channels[3].stream_type = 0;
  EXPECT_FALSE(canAssign(without_device));
}

}  // namespace
