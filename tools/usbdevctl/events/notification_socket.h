// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The manager's end of the change notification.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace usbdevctl {

constexpr std::uint16_t kNotificationPort = 10171;

class NotificationSocket {
 public:
  /// Takes the port on the loopback address; a failure is in `error`. Port 0 takes any free one.
  explicit NotificationSocket(std::uint16_t port);
  ~NotificationSocket();
  NotificationSocket(const NotificationSocket &) = delete;
  NotificationSocket &operator=(const NotificationSocket &) = delete;

  /// Empty while the socket is good.
  const std::string &error() const { return error_; }

  int descriptor() const { return socket_; }

  /// The next datagram whole, whatever its size; nothing where it cannot be received.
  std::optional<std::string> receive() const;

 private:
  int socket_;
  std::string error_;
};

}  // namespace usbdevctl
