// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/sockets.h"

#include <sys/select.h>
#include <sys/socket.h>

#include <cstdio>
#include <cstring>

namespace usbdev {
namespace {

constexpr time_t kPatience = 120;  // seconds

struct Messages {
  const char *cannot_wait;
  const char *timed_out;
  const char *not_ready;
  const char *cannot_transfer;
};

constexpr Messages kReading{"sock_read: select:error\n", "socket_read: timeout\n",
                            "sock_read: error: case not handled.", "sock_read:error recv()ing reply\n"};
constexpr Messages kWriting{"socket write: select: error\n", "socket write: timeout\n",
                            "socket write: error: case not handled.", "socket write: error send()ing request:\n"};

SocketResult fail(SocketResult result, const char *message) {
  std::fputs(message, stderr);
  return result;
}

SocketResult waitUntilReady(int sock, const Messages &direction) {
  if (sock < 0 || sock >= FD_SETSIZE) return fail(SocketResult::cannot_wait, direction.cannot_wait);
  fd_set watched;
  FD_ZERO(&watched);
  FD_SET(sock, &watched);
  timeval patience{kPatience, 0};
  const bool reading = &direction == &kReading;
  const int ready = select(sock + 1, reading ? &watched : nullptr, reading ? nullptr : &watched, nullptr, &patience);
  if (ready < 0) return fail(SocketResult::cannot_wait, direction.cannot_wait);
  if (ready == 0) return fail(SocketResult::timed_out, direction.timed_out);
  return FD_ISSET(sock, &watched) ? SocketResult::done : fail(SocketResult::not_ready, direction.not_ready);
}

}  // namespace

SocketResult receiveText(int sock, TextBuffer out, int &count) {
  const SocketResult waited = waitUntilReady(sock, kReading);
  if (waited != SocketResult::done) return waited;
  const ssize_t got = recv(sock, out.start, out.size - 1, 0);
  if (got < 0) return fail(SocketResult::cannot_transfer, kReading.cannot_transfer);
  out.start[got] = '\0';
  count = static_cast<int>(got);
  return SocketResult::done;
}

SocketResult sendText(int sock, const char *text, int &count) {
  const SocketResult waited = waitUntilReady(sock, kWriting);
  if (waited != SocketResult::done) return waited;
  const ssize_t sent = send(sock, text, std::strlen(text), MSG_NOSIGNAL);
  if (sent < 0) return fail(SocketResult::cannot_transfer, kWriting.cannot_transfer);
  count = static_cast<int>(sent);
  return SocketResult::done;
}

}  // namespace usbdev
