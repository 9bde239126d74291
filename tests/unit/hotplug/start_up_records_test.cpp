// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The lists of new devices: how many they hold, and what a caller's count makes of them.
#include "hotplug/start_up_records.h"

#include <gtest/gtest.h>

#include <string>

namespace usbdev {
namespace {

class AListOfNewDevices : public testing::Test {
 protected:
  _usbdev_update *append(NewDevices &list, const std::string &port, const std::string &name) {
    return list.append(port.c_str(), name.c_str());
  }

  _usbdev_update records[kNewDevices + 1] = {};
};

TEST_F(AListOfNewDevices, HoldsTen) {
  NewDevices list(records, 0);
  for (int i = 0; i < 10; ++i) EXPECT_EQ(append(list, "3-1", "Camera"), &records[i]);
  EXPECT_EQ(append(list, "3-1", "Camera"), nullptr);
  EXPECT_EQ(list.count(), 10);
}

TEST_F(AListOfNewDevices, ContinuesAfterACallersCount) {
  NewDevices list(records, 9);
  EXPECT_EQ(append(list, "3-1.2", "Camera"), &records[9]);
  EXPECT_STREQ(records[9].usbslot, "3-1.2");
  EXPECT_STREQ(records[9].devname, "Camera");
  EXPECT_EQ(records[9].state, 1);
}

TEST_F(AListOfNewDevices, TakesNothingWithACountOutOfItsRange) {
  for (const int count : {-1, 10, 11}) {
    NewDevices list(records, count);
    EXPECT_EQ(append(list, "3-1", "Camera"), nullptr) << count;
    EXPECT_EQ(list.count(), count);
  }
}

TEST_F(AListOfNewDevices, IsReadWithinItsSizeWhateverItsCount) {
  const auto size = [this](int count) {
    const RecordList list(records, count);
    return list.end() - list.begin();
  };
  EXPECT_EQ(size(-1), 0);
  EXPECT_EQ(size(9), 9);
  EXPECT_EQ(size(10), 10);
  EXPECT_EQ(size(11), 10);
}

TEST_F(AListOfNewDevices, NamesTheFirstDeviceInAPort) {
  NewDevices list(records, 0);
  append(list, "3-1", "First");
  append(list, "3-2", "Second");
  append(list, "3-2", "Third");
  EXPECT_STREQ(list.records().nameInPort("3-2"), "Second");
  EXPECT_EQ(list.records().nameInPort("3-3"), nullptr);
}

TEST_F(AListOfNewDevices, CutsTextsToTheirFields) {
  NewDevices list(records, 0);
  append(list, std::string(128, 'p'), std::string(256, 'n'));
  EXPECT_EQ(records[0].usbslot, std::string(127, 'p'));
  EXPECT_EQ(records[0].devname, std::string(255, 'n'));
}

}  // namespace
}  // namespace usbdev
