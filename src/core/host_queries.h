// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the library asks the host about itself.
#pragma once

#include "core/text.h"

namespace usbdev {

constexpr int kPackageTextSize = 128;
constexpr int kHostTextSize = 32;

/// Copies one field of an application package's registration; false when there is none, or a name holds a character
/// that a shell would read.
bool askPackageRegistry(const char *package, const char *field, TextBuffer value);

/// Notes the processor's vendor in the host's processor file, where others find it too, and reads it back. True when
/// the file could be read and names another vendor than Intel.
bool isProcessorOtherThanIntel();

enum class HostSetting { found, missing, unreadable };

/// Copies the value of a key from the host's settings before the NTP section. Missing when the file ends without it;
/// unreadable when the file cannot be opened, or at the NTP section or a line without "=", the file then left open as
/// callers have known it.
HostSetting copyHostSetting(const char *key, TextBuffer value);

/// May the host serve one camera channel only?
bool isOneChannelLimited();

}  // namespace usbdev
