// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The manager's end of the change notification.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace usbdevctl {

constexpr std::uint16_t kNotificationPort = 10171;
/// Where a manager that has the port passes on what it receives.
constexpr char kNotificationHub[] = "/var/lock/usbdev-notifications";

class NotificationSocket {
 public:
  /// Takes the port on the loopback address; if a manager has it and has a hub, connects to that. A failure is in
  /// `error`. Port 0 takes any free one.
  explicit NotificationSocket(std::uint16_t port, const std::string &hub = kNotificationHub);
  ~NotificationSocket();
  NotificationSocket(const NotificationSocket &) = delete;
  NotificationSocket &operator=(const NotificationSocket &) = delete;

  /// Empty while the socket is good.
  const std::string &error() const { return error_; }

  int descriptor() const { return socket_; }

  /// Whether the manager has the port.
  bool hasHub() const { return has_hub_; }

  /// The next datagram whole, whatever its size; nothing where it cannot be received, or the manager has ended.
  std::optional<std::string> receive() const;

 private:
  int socket_;
  bool has_hub_ = false;
  std::string error_;
};

}  // namespace usbdevctl
