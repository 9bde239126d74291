// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Updates the channels from the attached devices.
#pragma once

#include "devices/host_answers.h"
#include "hotplug/start_up_records.h"

namespace usbdev {

/// Finds the attached devices, updates the channels that know them, handles the others as newly plugged in, and clears
/// the profiles that a host with one channel does not serve. False when the first open of the file fails; if a later
/// step fails, the others run nevertheless.
bool synchronise(HostAnswers &host);

/// The application's start-up: the codec check, then the synchronisation.
void startUp();

/// Handles new devices as newly plugged in, cameras first.
void plugNewDevices(HostAnswers &host, const RecordList &cameras, const RecordList &cards);

/// Clears every profile but profile 0.
void clearLaterProfiles(const ChannelRecords &channels);

}  // namespace usbdev
