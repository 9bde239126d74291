// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_network.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace contract {

namespace {

// "notify event=6 profile=1 video=0 audio=1 flag=0 target=1" for a change notification, else its size.
std::string described(const Datagram &datagram) {
  if (datagram.bytes.size() != 56) return "notify " + std::to_string(datagram.bytes.size()) + " bytes";
  std::string line = "notify";
  const struct {
    const char *name;
    size_t offset;
  } fields[] = {{"event", 48}, {"profile", 32}, {"video", 36}, {"audio", 40}, {"flag", 44}, {"target", 52}};
  for (const auto &field : fields) {
    line += std::string(" ") + field.name + "=" + std::to_string(datagram.word(field.offset));
  }
  return line;
}

}  // namespace

int Datagram::word(size_t offset) const {
  int value = 0;
  if (offset + sizeof value <= bytes.size()) memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}

std::vector<Datagram> FakeNetwork::datagrams() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return datagrams_;
}

int FakeNetwork::openSockets() const { return static_cast<int>(std::count(sockets_.begin(), sockets_.end(), true)); }

bool FakeNetwork::refusesSocket() const {
  if (sockets_fail_) errno = EMFILE;
  return sockets_fail_;
}

void FakeNetwork::opened(int socket) {
  if (socket >= 0) sockets_.at(static_cast<std::size_t>(socket)) = true;
}

void FakeNetwork::closed(int socket) {
  if (socket >= 0) sockets_.at(static_cast<std::size_t>(socket)) = false;
}

ssize_t FakeNetwork::send(const void *data, size_t size, int flags, const sockaddr_in &to) {
  Datagram datagram;
  datagram.bytes.assign(static_cast<const char *>(data), size);
  char address[INET_ADDRSTRLEN] = "";
  inet_ntop(AF_INET, &to.sin_addr, address, sizeof address);
  datagram.address = address;
  datagram.port = ntohs(to.sin_port);
  datagram.flags = flags;
  journal_.add(described(datagram));
  std::lock_guard<std::mutex> guard(mutex_);
  datagrams_.push_back(datagram);
  if (sends_fail_) {
    errno = EPERM;
    return -1;
  }
  return short_send_ >= 0 ? short_send_ : static_cast<ssize_t>(size);
}

void FakeNetwork::serve(int port, int actual_port) {
  std::lock_guard<std::mutex> guard(mutex_);
  servers_[port] = actual_port;
}

int FakeNetwork::portBehind(const sockaddr_in &address) {
  char host[INET_ADDRSTRLEN] = "";
  inet_ntop(AF_INET, &address.sin_addr, host, sizeof host);
  const int port = ntohs(address.sin_port);
  journal_.add(std::string("connect ") + host + ":" + std::to_string(port));
  std::lock_guard<std::mutex> guard(mutex_);
  const auto found = servers_.find(port);
  return found == servers_.end() ? 0 : found->second;
}

void FakeNetwork::sending(const void *data, size_t size, int flags) {
  if ((flags & MSG_NOSIGNAL) == 0) journal_.violation("sent with a signal for a peer that has gone");
  std::lock_guard<std::mutex> guard(mutex_);
  sent_.emplace_back(static_cast<const char *>(data), size);
}

void FakeNetwork::waiting(const std::string &line) {
  std::lock_guard<std::mutex> guard(mutex_);
  waits_.push_back(line);
}

Lines FakeNetwork::sent() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return sent_;
}

Lines FakeNetwork::waits() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return waits_;
}

}  // namespace contract
