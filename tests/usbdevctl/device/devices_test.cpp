// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "device/devices.h"

#include <gtest/gtest.h>

#include "json_of.h"
#include "some_cameras.h"

namespace {

using usbdevctl::deviceFields;

TEST(TheDevices, AreThoseOfTheChannelsThatHaveOne) {
  std::array<_usbdev_entry, USBDEV_CHANNELS> entries = {};
  entries[4] = attachedEntry(2);
  entries[4].stream_type = 3;
  entries[4].aenable = 1;
  entries[4].shrenable = 1;
  setField(entries[4].createtime, "2024-03-05 08:15:00");
  const auto rows = deviceFields(entries, {});
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(jsonOf(rows[0]),
            R"({"schema":1,"channel":4,"state":"plugged","slot":"3-1","device":"Cam","stream":"both","audio":true,)"
            R"("shared":true,"profile":2,"profile_name":"Door","slot_switch":true,"parked_behind":null,)"
            R"("supported":true,"reason":null,"created":"2024-03-05 08:15:00"})"
            "\n");
}

}  // namespace
