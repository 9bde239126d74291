// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The state of the live streams, and the signals about it.
#pragma once

#include "devices/device_walk.h"

namespace usbdev {

/// Does a profile's playlist exist? Any number is a profile here.
bool hasPlaylist(int profile);

/// What the streaming service receives.
using StreamSignal = char[32];

/// Sends a signal to the streaming service; a failure is reported on standard error.
bool sendStreamSignal(const StreamSignal &signal);

/// The processes that read a camera's pictures.
enum class StreamSource { encoder, camera };

/// Does a source process run for a device's number?
bool isSourceRunning(int number, StreamSource source);

/// Stores whether a profile is available. Any number is a profile here.
bool storeProfileState(int profile, int value);

enum class ProductSearch : int {
  found = 0,
  no_channel = -1,
  unreadable = -2,
  not_found = -3,
};

/// Finds the vendor and product of a profile's camera, such as "046d:0825"; `pidvid` is set when they are found.
ProductSearch findProductOfProfile(int profile, char (&pidvid)[kShortCodeSize]);

}  // namespace usbdev
