// Events of the log, for people and for programs.
#pragma once

#include <string>

#include "output/json.h"
#include "parts/event_log.h"

namespace usbdevctl {

/// One line, in local time.
std::string eventText(const Event &event, bool colour);

/// The event's own fields, its time in UTC.
Json eventJson(const Event &event);

}  // namespace usbdevctl
