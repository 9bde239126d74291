// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The user's wish to end a command that waits: Ctrl-C or a termination signal.
#pragma once

#include <csignal>
#include <optional>

namespace usbdevctl {

/// While one lives, SIGINT and SIGTERM do not end the program but are waited for. Make it before anything that a user
/// could take as the sign that the program is ready.
class StopRequest {
 public:
  StopRequest();
  ~StopRequest();
  StopRequest(const StopRequest &) = delete;
  StopRequest &operator=(const StopRequest &) = delete;

  enum class Event { readable, stopped, timed_out, failed };

  /// Waits until the descriptor can be read, stop is requested or the time is up. A descriptor of -1 is never
  /// readable; no time-out means without a limit. Fails where the system cannot wait, or could not be asked to stop.
  Event wait(int descriptor, std::optional<int> milliseconds) const;

 private:
  sigset_t before_;
  int signals_;
};

}  // namespace usbdevctl
