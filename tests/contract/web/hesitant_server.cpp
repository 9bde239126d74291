// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hesitant_server.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "real_function.h"

namespace contract {
namespace {

constexpr int kPatience = 20;  // seconds

// Each read from a connection, by the program or a child of it, passes its length through this pipe before it waits.
int waits_from = -1;
int waits_to = -1;

bool isConnection(int descriptor) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  return getpeername(descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0;
}

void tellWait(int descriptor, size_t length) {
  if (waits_to < 0 || !isConnection(descriptor)) return;
  const auto told = static_cast<unsigned>(length);
  static_cast<void>(write(waits_to, &told, sizeof told) == 0);  // the server has gone, or will not look at it
}

int listenOnLoopback() {
  const int made = realFunction<int(int, int, int)>("socket")(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address);
  const timeval patience{kPatience, 0};
  setsockopt(made, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  listen(made, 1);
  return made;
}

void readRequest(int connection) {
  std::string request;
  char part[512];
  ssize_t got = 1;
  while (got > 0 && request.find("\r\n\r\n") == std::string::npos) {
    got = recv(connection, part, sizeof part, 0);
    if (got > 0) request.append(part, static_cast<size_t>(got));
  }
}

bool sendPiece(int connection, const std::string &piece) {
  static auto *const real = realFunction<ssize_t(int, const void *, size_t, int)>("send");
  for (size_t sent = 0; sent < piece.size();) {
    const ssize_t count = real(connection, piece.data() + sent, piece.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return false;
    sent += static_cast<size_t>(count);
  }
  return true;
}

void end(int connection, bool gently) {
  const linger at_once{1, 0};
  if (!gently) setsockopt(connection, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  if (gently) shutdown(connection, SHUT_WR);
  char rest[512];
  while (gently && recv(connection, rest, sizeof rest, 0) > 0) continue;
}

}  // namespace

HesitantServer::HesitantServer(Manner manner) : manner_(std::move(manner)), listener_(listenOnLoopback()) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &size);
  port_ = ntohs(address.sin_port);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0) {
    waits_from = ends[0];
    waits_to = ends[1];
  }
  thread_ = std::thread([this] { run(); });
}

HesitantServer::~HesitantServer() {
  shutdown(listener_, SHUT_RDWR);  // ends the wait for a connection that did not come
  if (thread_.joinable()) thread_.join();
  close(listener_);
  close(waits_from);
  close(waits_to);
  waits_from = waits_to = -1;
}

std::vector<size_t> HesitantServer::lengthsAskedFor() {
  if (thread_.joinable()) thread_.join();
  return lengths_;
}

void HesitantServer::run() {
  const int connection = accept(listener_, nullptr, nullptr);
  if (connection < 0) return;
  serve(connection);
  close(connection);
}

// False when the program has gone instead. A negative number means a connection that is not looked at.
bool HesitantServer::programWaits(int connection) {
  pollfd events[] = {{waits_from, POLLIN, 0}, {connection, POLLIN, 0}};
  if (poll(events, 2, kPatience * 1000) <= 0 || (events[0].revents & POLLIN) == 0) return false;
  unsigned length = 0;
  static_cast<void>(read(waits_from, &length, sizeof length) == 0);
  lengths_.push_back(length);
  return true;
}

void HesitantServer::serve(int connection) {
  if (manner_.end == Manner::End::no_ears) {
    programWaits(-1);
    return end(connection, false);
  }
  readRequest(connection);
  for (const std::string &piece : manner_.pieces) {
    if (!programWaits(connection) || !sendPiece(connection, piece)) return;
  }
  while (manner_.end == Manner::End::none) {
    if (!programWaits(connection) || !sendPiece(connection, manner_.pieces.back())) return;
  }
  programWaits(connection);
  end(connection, manner_.end == Manner::End::close);
}

}  // namespace contract

extern "C" {

ssize_t read(int descriptor, void *bytes, size_t length) {
  static auto *const real = contract::realFunction<ssize_t(int, void *, size_t)>("read");
  contract::tellWait(descriptor, length);
  return real(descriptor, bytes, length);
}

}  // extern "C"
