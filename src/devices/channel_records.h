// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The records that describe a channel to the settings pages, filled from its keys. Each reader sets only some of a
// record's fields and leaves the others as they are.
#pragma once

#include <usbdev/records.h>

#include "core/config.h"

namespace usbdev {

/// A row of the availability queries.
void readAvailable(const Section &channel, _availinfo &row);

/// What the device in a port streams. The presets are what missing keys read as.
void presetSlotStream(_streaminfo &info);
void readSlotStream(const Section &channel, _streaminfo &info);

/// What a profile streams.
void presetProfileStream(_streaminfo &info);
void readProfileStream(const Section &channel, _streaminfo &info);

/// All settings of a profile; its presets leave nothing of what stood in the record.
void presetProfile(_profile_info &info);
void readProfile(const Section &channel, _profile_info &info);

/// A row of the device table.
void readDeviceRow(const Section &channel, _usbdev_entry &row);

/// A row of the profile table, and what a profile with video adds to it.
void readProfileRow(const Section &channel, _usbdev_entry &row);
void addVideoToRow(const Section &channel, _usbdev_entry &row);

/// The stored frame rate; 30 when there is none.
float readRate(const Section &channel);

}  // namespace usbdev
