// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Reading from and writing to a socket that may be slow. A failure is reported on standard error.
#pragma once

#include "core/text.h"

namespace usbdev {

enum class SocketResult : int {
  done = 0,
  cannot_wait = -1,
  timed_out = -2,
  cannot_transfer = -3,
  not_ready = -4,
};

/// Waits up to 120 seconds for a socket, receives once and terminates what was received; `count` is set when that is
/// done.
SocketResult receiveText(int sock, TextBuffer out, int &count);

/// Waits up to 120 seconds for a socket and sends a text.
SocketResult sendText(int sock, const char *text, int &count);

}  // namespace usbdev
