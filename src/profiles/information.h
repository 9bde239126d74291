// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What is stored about a profile.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Reads all settings of a profile. The record is preset in any case.
bool readProfileInfo(int profile, _profile_info &info);

/// The profile of a channel; kNone when it has none or the file cannot be opened. Any number is a channel here.
int profileOfChannel(int channel);

enum class StreamAccess : int {
  read = 0,
  no_channel = -1,
  unplugged = -2,
  conflict = -3,
  switched_off = -4,
};

/// Reads the stream settings of a profile. The record is preset in any case.
StreamAccess readStreamInfo(int profile, _streaminfo &info);

}  // namespace usbdev
