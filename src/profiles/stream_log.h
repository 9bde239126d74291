// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the event log reports about a change of a profile's stream.
#pragma once

#include <usbdev/records.h>

#include "core/change_notification.h"

namespace usbdev {

/// Logs an event per setting that changed, with EventCode::report_all for every setting.
void logStreamChange(int profile, const _streaminfo &new_info, const _streaminfo &old_info, float chosen_fps,
                     EventCode code);

}  // namespace usbdev
