// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/stream_socket.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>

namespace usbdev {

StreamSocket::StreamSocket(const sockaddr_in &address, const ConnectMessages &messages)
    : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  if (descriptor_ < 0) {
    std::fputs(messages.no_socket, messages.stream);
    return;
  }
  if (connect(descriptor_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0) return;
  std::fputs(messages.no_connection, messages.stream);
  close(release());
}

StreamSocket::~StreamSocket() {
  if (descriptor_ >= 0) close(descriptor_);
}

int StreamSocket::release() {
  const int descriptor = descriptor_;
  descriptor_ = -1;
  return descriptor;
}

long StreamSocket::sendBytes(const void *bytes, std::size_t size) const {
  return send(descriptor_, bytes, size, MSG_NOSIGNAL);
}

bool resolveHost(const char *host, int port, sockaddr_in &address) {
  hostent entry;
  char room[8192];  // for the entry's names and addresses
  hostent *found = nullptr;
  int failure = 0;
  if (gethostbyname_r(host, &entry, room, sizeof room, &found, &failure) != 0) found = nullptr;
  if (found == nullptr || found->h_addrtype != AF_INET) {
    std::puts("hp = NULL");
    return false;
  }
  address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  std::memcpy(&address.sin_addr, found->h_addr_list[0], sizeof address.sin_addr);
  return true;
}

}  // namespace usbdev
