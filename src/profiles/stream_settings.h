// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The stream settings of a profile.
#pragma once

#include <usbdev/records.h>

#include "core/change_notification.h"

namespace usbdev {

/// Stores and logs the settings that differ from the old ones, and notifies when one did, or with
/// EventCode::report_all. The stream type of the new ones is set to what the channel has. False when the camera does
/// not offer codec and size, nothing then being written, or when something cannot be stored or sent.
bool setStream(int profile, _streaminfo &new_info, const _streaminfo &old_info, EventCode code);

}  // namespace usbdev
