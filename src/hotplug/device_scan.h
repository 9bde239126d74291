// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The attached devices, as the drivers list them, compared with the channels.
#pragma once

#include "devices/conflicts.h"
#include "hotplug/start_up_records.h"

namespace usbdev {

/// Finds the attached cameras: sets node, port, name and state in the record of a channel whose camera is attached, and
/// the task for its conflict mark; adds cameras that no channel knows to the new ones. False when the file cannot be
/// opened; if the drivers' list cannot be read, nothing is found.
bool findCameras(HostAnswers &host, ChannelRecords &channels, ConflictTasks &tasks, NewDevices &new_cameras);

/// Finds the attached sound cards in the same way; a card gets the name of the camera in its port, if there is one.
bool findSoundCards(ChannelRecords &channels, NewDevices &new_cards, const RecordList &new_cameras);

}  // namespace usbdev
