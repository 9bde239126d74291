// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The notification that lets the manager begin a stream.
#pragma once

namespace usbdevctl {

/// Notifies the manager of a profile, as the library does after a change of its settings. The library notifies nobody
/// of an assignment, nor of settings that are what they were.
void notifyOfStream(int profile);

}  // namespace usbdevctl
