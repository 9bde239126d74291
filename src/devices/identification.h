// Where a USB device sits and whether the host knows it.
#pragma once

#include <cstddef>

#include "core/config.h"

namespace usbdev {

constexpr std::size_t kBridgePathSize = 256;
constexpr std::size_t kShortCodeSize = 16;

inline constexpr char kNoSupportList[] = "/etc/config/.usbnosupportlist.dat";

/// Was a port last switched on? The stored state of the first channel that has one for it, else 1.
int storedSwitch(const OpenConfig &config, const char *usbslot);

/// Takes the value of an attribute from one line of a device walk, as in ATTRS{idVendor}=="046d": cuts the line in
/// place; false, nothing taken, when the line holds another attribute.
bool takeAttribute(char *line, const char *attribute, char (&value)[kShortCodeSize]);

}  // namespace usbdev
