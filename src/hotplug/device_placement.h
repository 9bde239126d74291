// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Which channels know an attached device: the rules, on what the channels store and the records of a start-up.
#pragma once

#include "devices/conflicts.h"
#include "hotplug/start_up_records.h"

namespace usbdev {

/// A device that the drivers list.
struct FoundDevice {
  int node;
  char usbslot[128];
  char name[256];
};

/// Assigns a camera to the first channel that knows its port and name, takes the node from every other channel with the
/// port, and sets the tasks for their conflict marks. False when no channel knows the camera.
bool placeCamera(const FoundDevice &camera, const ChannelSnapshots &known, bool may_encode, ChannelRecords &channels,
                 ConflictTasks &tasks);

/// The name of a card: that of the camera in its port, of a channel or else of a new one, or its own if there is none.
const char *nameOfCard(const FoundDevice &card, const ChannelRecords &channels, const RecordList &new_cameras);

/// Takes a card away from the channels, as audio attachment is off; false when no channel knows its port and name.
bool placeCard(const FoundDevice &card, const char *name, const ChannelSnapshots &known, ChannelRecords &channels);

}  // namespace usbdev
