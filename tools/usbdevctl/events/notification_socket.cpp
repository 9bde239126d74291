// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/notification_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace usbdevctl {

namespace {

constexpr std::size_t kLargestDatagram = 65536;

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

std::string failureText(std::uint16_t port) {
  std::string text = "cannot listen on 127.0.0.1:" + std::to_string(port) + ": " + std::strerror(errno);
  if (errno == EADDRINUSE) text += " (is another manager or watch running?)";
  return text;
}

/// A connection to the hub; -1 where there is none.
int connectedTo(const std::string &hub) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  hub.copy(address.sun_path, sizeof address.sun_path - 1);
  const int connection = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
  if (connection < 0) return -1;
  if (connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) return connection;
  close(connection);
  return -1;
}

}  // namespace

NotificationSocket::NotificationSocket(std::uint16_t port, const std::string &hub)
    : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in address = loopback(port);
  if (socket_ >= 0 && bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) return;
  error_ = failureText(port);
  const int connection = connectedTo(hub);
  if (connection < 0) return;
  if (socket_ >= 0) close(socket_);
  socket_ = connection;
  has_hub_ = true;
  error_.clear();
}

NotificationSocket::~NotificationSocket() {
  if (socket_ >= 0) close(socket_);
}

std::optional<std::string> NotificationSocket::receive() const {
  std::string datagram(kLargestDatagram, '\0');
  ssize_t size = 0;
  do size = recv(socket_, datagram.data(), datagram.size(), 0);
  while (size < 0 && errno == EINTR);
  if (size < 0 || (size == 0 && has_hub_)) return std::nullopt;
  datagram.resize(static_cast<std::size_t>(size));
  return datagram;
}

}  // namespace usbdevctl
