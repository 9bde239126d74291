// What the library asks the host about itself.
#pragma once

#include <cstdio>

#include "core/lines.h"

namespace usbdev {

constexpr int kPackageTextSize = 128;
constexpr int kHostTextSize = 32;

/// Notes the processor's vendor in the host's processor file, where others find it too, and reads it back. True when
/// the file could be read and names another vendor than Intel.
bool isProcessorOtherThanIntel();

/// Copies the value of a key from the host's settings before the NTP section, cut to the length. 1 with the value; 0
/// when the file ends without it; -1 when the file cannot be opened, or at the NTP section or a line without "=", the
/// file then left open as callers have known it.
int copyHostSetting(const char *key, char *out, std::size_t length);

}  // namespace usbdev
