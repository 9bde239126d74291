// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Events of the log, for people and for programs.
#pragma once

#include <string>

#include "events/event_log.h"
#include "output/json.h"

namespace usbdevctl {

/// One line, in local time.
std::string eventText(const Event &event, bool colour);

/// The object with the event's fields, its time in UTC.
Json addEvent(Json object, const Event &event);

}  // namespace usbdevctl
