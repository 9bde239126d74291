// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What became of a change of a stream's settings.
#pragma once

#include <usbdev/records.h>

#include <vector>

#include "events/event_log.h"
#include "output/fields.h"
#include "stream/stream_settings.h"

namespace usbdevctl {

struct StreamOutcome {
  _streaminfo stored = {};    // the settings as they are now
  std::vector<Event> events;  // what the change had logged
};

/// The rate that was chosen, what was logged, and what was asked for in vain.
Fields outcomeFields(const StreamOutcome &outcome, const StreamChange &change);

}  // namespace usbdevctl
