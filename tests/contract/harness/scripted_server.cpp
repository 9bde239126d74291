// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "scripted_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

#include "real_function.h"

namespace contract {

namespace {

// The server's own sockets are none of the library's.
int makeListener() {
  const int made = realFunction<int(int, int, int)>("socket")(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bind(made, reinterpret_cast<const sockaddr *>(&address), sizeof address);
  const timeval patience{20, 0};
  setsockopt(made, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  listen(made, SOMAXCONN);
  return made;
}

bool sendAll(int connection, const char *bytes, size_t size) {
  static auto *const real = realFunction<ssize_t(int, const void *, size_t, int)>("send");
  while (size > 0) {
    const ssize_t sent = real(connection, bytes, size, MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes += sent;
    size -= static_cast<size_t>(sent);
  }
  return true;
}

std::string readUntil(int connection, const std::string &end) {
  std::string text;
  char part[512];
  while (text.find(end) == std::string::npos) {
    const ssize_t got = recv(connection, part, sizeof part, 0);
    if (got <= 0) break;
    text.append(part, static_cast<size_t>(got));
  }
  return text;
}

// What the peer still sends is read, so that the end is an end for it and not a broken connection.
void closeGently(int connection) {
  shutdown(connection, SHUT_WR);
  char rest[512];
  while (recv(connection, rest, sizeof rest, 0) > 0) continue;
}

void reset(int connection) {
  const linger at_once{1, 0};
  setsockopt(connection, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

}  // namespace

ScriptedServer::ScriptedServer(std::vector<Answer> script, Repeats repeats)
    : script_(std::move(script)), for_ever_(repeats == Repeats::for_ever), listener_(makeListener()) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(listener_, reinterpret_cast<sockaddr *>(&address), &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { run(); });
}

ScriptedServer::~ScriptedServer() {
  shutdown(listener_, SHUT_RDWR);  // ends the wait for connections that did not come
  if (thread_.joinable()) thread_.join();
  close(listener_);
}

Lines ScriptedServer::requests() {
  if (thread_.joinable()) thread_.join();
  return requests_;
}

void ScriptedServer::run() {
  do {
    for (const Answer &next : script_) {
      if (!serve(next)) return;
    }
  } while (for_ever_);
}

// False when nobody came.
bool ScriptedServer::serve(const Answer &next) {
  const int connection = accept(listener_, nullptr, nullptr);
  if (connection < 0) return for_ever_ && errno == EAGAIN;
  answer(connection, next);
  close(connection);
  return true;
}

void ScriptedServer::answer(int connection, const Answer &answer) {
  if (!answer.until.empty()) requests_.push_back(readUntil(connection, answer.until));
  const size_t step = answer.in_single_bytes ? 1 : answer.bytes.size();
  for (size_t i = 0; i < answer.bytes.size(); i += step) {
    if (!sendAll(connection, answer.bytes.data() + i, step)) return;
  }
  if (answer.end == Answer::End::reset) {
    reset(connection);
  } else {
    closeGently(connection);
  }
}

}  // namespace contract
