// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The keys of a channel as they are where the channel never had a device. The library has no function that frees one;
// a port that is still stored keeps the channel for its device, and the port's switch for the next one.
#pragma once

#include <vector>

namespace usbdevctl {

inline constexpr char kConfigurationFile[] = "/etc/config/usbdev.conf";
inline constexpr char kConfigurationRoot[] = "velmora";

/// A key with the number, or, where there is one, the text that it is reset to.
struct ResetKey {
  const char *key;
  const char *sub_key;  // null right below the channel
  const char *text;
  int number;
};

const std::vector<ResetKey> &resetKeys();

}  // namespace usbdevctl
