// The channels brought into line with the attached devices.
#pragma once

#include "devices/host_answers.h"
#include "hotplug/start_up_records.h"

namespace usbdev {

/// Finds the attached devices, updates the channels that know them, passes the others through the handler, and gives up
/// the profiles that a one-channel host does not serve. False when the file cannot be opened at first; the later steps
/// run whatever the earlier ones came to.
bool synchronise(HostAnswers &host);

/// What the application starts with: the codec check, then the synchronisation.
void startUp();

/// Passes new devices through the handler, cameras first.
void plugNewDevices(HostAnswers &host, const RecordList &cameras, const RecordList &cards);

/// Clears every profile but profile 0.
void clearLaterProfiles(const ChannelRecords &channels);

}  // namespace usbdev
