// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/notification_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
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

}  // namespace

NotificationSocket::NotificationSocket(std::uint16_t port) : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
  const sockaddr_in address = loopback(port);
  if (socket_ < 0 || bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
    error_ = failureText(port);
  }
}

NotificationSocket::~NotificationSocket() {
  if (socket_ >= 0) close(socket_);
}

std::optional<std::string> NotificationSocket::receive() const {
  std::string datagram(kLargestDatagram, '\0');
  ssize_t size = 0;
  do size = recv(socket_, datagram.data(), datagram.size(), 0);
  while (size < 0 && errno == EINTR);
  if (size < 0) return std::nullopt;
  datagram.resize(static_cast<std::size_t>(size));
  return datagram;
}

}  // namespace usbdevctl
