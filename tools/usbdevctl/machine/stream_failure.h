// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the manager stores of a stream that failed: the system's text of the error, in the folder of the stream.
#pragma once

#include <string>

namespace usbdevctl {

inline std::string streamFolder(int profile) {
  return "/mnt/ext/opt/apps/Velmora2/hls/channel" + std::to_string(profile + 1);
}

/// The system has one text for a full disk and for a bus without bandwidth.
inline bool isLackOfSpace(const std::string &failure) { return failure == "No space left on device"; }
inline bool isBusyFailure(const std::string &failure) { return failure == "Device or resource busy"; }
inline bool isRefusal(const std::string &failure) {
  return failure == "Permission denied" || failure == "Operation not permitted";
}

}  // namespace usbdevctl
