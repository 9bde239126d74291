// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channels know a device that the drivers list, and what becomes of their records and conflict marks.
#include "hotplug/device_placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "core/text.h"

namespace usbdev {
namespace {

constexpr char kPort[] = "3-1";
constexpr char kName[] = "HD Webcam";

/// A device in port 3-1, node 5, and ten channels that were never configured.
class AFoundDevice : public testing::Test {
 protected:
  AFoundDevice() {
    std::fill_n(tasks, kChannels, ConflictTask::leave);
    for (int i = 0; i < kChannels; ++i) {
      known[i].exists = kNeverConfigured;
      records[i] = {};
      records[i].vnode = records[i].anode = 20 + i;
      records[i].state = kNeverConfigured;
      records[i].profile = 2;
    }
  }

  ChannelSnapshot &stored(int i, int exists, const std::string &port = kPort, const std::string &name = kName) {
    known[i].exists = exists;
    copyText(known[i].usbslot, port.c_str());
    copyText(known[i].devname, name.c_str());
    return known[i];
  }

  FoundDevice device{5, "3-1", "HD Webcam"};
  ChannelSnapshots known;
  ChannelRecords records;
  ConflictTasks tasks;
};

class AFoundCamera : public AFoundDevice {
 protected:
  bool place(bool may_encode = true) { return placeCamera(device, known, may_encode, records, tasks); }
};

TEST_F(AFoundCamera, GoesToTheFirstChannelWithItsPortAndName) {
  stored(2, 1, kPort, "Other");
  stored(4, 1);
  stored(6, 1);
  EXPECT_TRUE(place());
  EXPECT_EQ(records[4].vnode, 5);
  EXPECT_STREQ(records[4].usbslot, kPort);
  EXPECT_STREQ(records[4].devname, kName);
  EXPECT_EQ(tasks[4], ConflictTask::recompute);
}

TEST_F(AFoundCamera, MayGoToTheLastChannel) {
  stored(9, 1);
  EXPECT_TRUE(place());
  EXPECT_EQ(records[9].vnode, 5);
}

TEST_F(AFoundCamera, TakesTheNodeFromTheOtherChannelsOfItsPort) {
  stored(2, 1, kPort, "Other");
  stored(4, 1);
  stored(6, 1);
  stored(9, 1, "3-2");
  place();
  EXPECT_EQ(records[2].vnode, -1);
  EXPECT_EQ(records[6].vnode, -1);
  EXPECT_EQ(records[9].vnode, 29);
}

TEST_F(AFoundCamera, ClearsTheMarkOfAnotherChannelOfItsPortOnlyIfThatExists) {
  stored(1, 1, kPort, "Other");
  stored(2, 0, kPort, "Other");
  stored(3, kNeverConfigured, kPort, "Other");
  EXPECT_FALSE(place());
  EXPECT_EQ(tasks[1], ConflictTask::clear_and_recompute);
  EXPECT_EQ(tasks[2], ConflictTask::leave);
  EXPECT_EQ(tasks[3], ConflictTask::leave);
}

TEST_F(AFoundCamera, ThatWasUnsupportedStaysSoOnlyIfTheHostCannotEncode) {
  stored(4, 1).conflictch = 999;
  place(true);
  EXPECT_EQ(tasks[4], ConflictTask::clear_and_recompute);
  place(false);
  EXPECT_EQ(tasks[4], ConflictTask{999});
}

TEST_F(AFoundCamera, ThatWasUnpluggedHasItsMarkRecomputed) {
  stored(4, 0).conflictch = 999;
  place(false);
  EXPECT_EQ(tasks[4], ConflictTask::recompute);
}

TEST_F(AFoundCamera, IsUnknownInAnotherPort) {
  stored(4, 1, "3-1.1");
  EXPECT_FALSE(place());
  EXPECT_EQ(records[4].vnode, 24);
  EXPECT_EQ(tasks[4], ConflictTask::leave);
}

TEST_F(AFoundCamera, MarksEveryConfiguredChannel) {
  stored(0, 0, "3-2");
  stored(9, 1, "3-3");
  place();
  EXPECT_EQ(records[0].state, 1);
  EXPECT_EQ(records[9].state, 1);
  EXPECT_EQ(records[5].state, -1);
}

class AFoundCard : public AFoundDevice {
 protected:
  bool place() { return placeCard(device, kName, known, records); }
};

TEST_F(AFoundCard, IsKnownByItsPortAndName) {
  stored(4, 1, kPort, "Other");
  EXPECT_FALSE(place());
  stored(6, 1, "3-2");
  EXPECT_FALSE(place());
  stored(8, 1);
  EXPECT_TRUE(place());
}

TEST_F(AFoundCard, IsKnownWhateverOtherChannelsOfItsPortAreCalled) {
  stored(2, 1);
  stored(4, 1, kPort, "Other");
  EXPECT_TRUE(place());
}

TEST_F(AFoundCard, IsTakenFromEveryChannelOfItsPort) {
  stored(2, 1);
  stored(4, 1, kPort, "Other");
  stored(6, 1, "3-2");
  place();
  EXPECT_EQ(records[2].anode, -1);
  EXPECT_EQ(records[4].anode, -1);
  EXPECT_EQ(records[6].anode, 26);
  EXPECT_EQ(records[2].profile, 2);
}

TEST_F(AFoundCard, TakesCardAndProfileFromChannelsWhoseNameBeginsWithKAB) {
  stored(4, 1, "3-2", "KAB 5");
  stored(5, 1, "3-2", "A KAB");
  place();
  EXPECT_EQ(records[4].anode, -1);
  EXPECT_EQ(records[4].profile, -1);
  EXPECT_EQ(records[5].anode, 25);
  EXPECT_EQ(records[5].profile, 2);
}

TEST_F(AFoundCard, MarksEveryConfiguredChannel) {
  stored(0, 0, "3-2");
  place();
  EXPECT_EQ(records[0].state, 1);
  EXPECT_EQ(records[5].state, -1);
}

TEST_F(AFoundCard, IsNamedAfterTheCameraInItsPort) {
  _usbdev_update camera{};
  const RecordList new_cameras(&camera, 1);
  EXPECT_STREQ(nameOfCard(device, records, new_cameras), kName);
  copyText(camera.usbslot, kPort);
  copyText(camera.devname, "New Camera");
  EXPECT_STREQ(nameOfCard(device, records, new_cameras), "New Camera");
  copyText(records[9].usbslot, kPort);
  copyText(records[9].devname, "Known Camera");
  EXPECT_STREQ(nameOfCard(device, records, new_cameras), "Known Camera");
}

}  // namespace
}  // namespace usbdev
