// Where a USB device sits and whether the host knows it.
#pragma once

#include <cstddef>

namespace usbdev {

constexpr std::size_t kBridgePathSize = 256;
constexpr std::size_t kShortCodeSize = 16;

inline constexpr char kNoSupportList[] = "/etc/config/.usbnosupportlist.dat";

/// What stands behind an attribute of one line of a device walk, as in ATTRS{idVendor}=="046d": cuts the line in place
/// and returns the value; null when the line holds another attribute.
char *attributeValue(char *line, const char *attribute);

}  // namespace usbdev
