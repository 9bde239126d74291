// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// connect, send, select and gethostbyname_r of the C library, so that no call leaves the made-up host.
#include <netdb.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

namespace {

bool isDotted(const std::string &name) { return name.find_first_not_of("0123456789.") == std::string::npos; }

int nobodyFlagged(int answer, fd_set *reading, fd_set *writing) {
  if (reading != nullptr) FD_ZERO(reading);
  if (writing != nullptr) FD_ZERO(writing);
  if (answer < 0) errno = EBADF;
  return answer;
}

}  // namespace

extern "C" {

int connect(int descriptor, const sockaddr *address, socklen_t size) {
  static auto *const real = realFunction<int(int, const sockaddr *, socklen_t)>("connect");
  Host *host = Host::current();
  if (host == nullptr || address->sa_family != AF_INET) return real(descriptor, address, size);
  if (const std::optional<int> failure = host->calls.failure("connect")) return *failure;
  sockaddr_in server{};
  memcpy(&server, address, sizeof server);
  const int port = host->network.portBehind(server);
  if (port == 0) {
    errno = ECONNREFUSED;
    return -1;
  }
  server.sin_port = htons(static_cast<in_port_t>(port));
  server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int result = real(descriptor, reinterpret_cast<const sockaddr *>(&server), sizeof server);
  if (host->network.breaksConnections()) shutdown(descriptor, SHUT_WR);
  return result;
}

ssize_t send(int descriptor, const void *data, size_t size, int flags) {
  static auto *const real = realFunction<ssize_t(int, const void *, size_t, int)>("send");
  Host *host = Host::current();
  if (host == nullptr) return real(descriptor, data, size, flags);
  const std::optional<int> failure = host->calls.failure("send");
  if (failure && *failure != contract::kHalfOfTheBytes) return *failure;
  const size_t sent = failure ? (size + 1) / 2 : size;
  host->network.sending(data, sent, flags);
  return real(descriptor, data, sent, flags);
}

int select(int count, fd_set *reading, fd_set *writing, fd_set *failing, timeval *patience) {
  static auto *const real = realFunction<int(int, fd_set *, fd_set *, fd_set *, timeval *)>("select");
  Host *host = Host::current();
  if (host == nullptr) return real(count, reading, writing, failing, patience);
  if (patience != nullptr) {
    host->network.waiting(std::string(reading != nullptr ? "read " : "") + (writing != nullptr ? "write " : "") +
                          std::to_string(patience->tv_sec) + "." + std::to_string(patience->tv_usec));
  }
  const std::optional<int> failure = host->calls.failure("select");
  const std::optional<int> answer = failure ? failure : host->network.selectAnswer();
  return answer ? nobodyFlagged(*answer, reading, writing) : real(count, reading, writing, failing, patience);
}

int gethostbyname_r(const char *name, hostent *entry, char *room, size_t size, hostent **found, int *failure) {
  static auto *const real =
      realFunction<int(const char *, hostent *, char *, size_t, hostent **, int *)>("gethostbyname_r");
  Host *host = Host::current();
  if (host == nullptr) return real(name, entry, room, size, found, failure);
  if (const std::optional<int> refused = host->calls.failure("gethostbyname_r", name)) {
    *found = nullptr;
    return *refused;
  }
  if (isDotted(name)) return real(name, entry, room, size, found, failure);
  if (host->network.knows(name)) return real("127.0.0.1", entry, room, size, found, failure);
  *found = nullptr;
  *failure = HOST_NOT_FOUND;
  return 0;
}

}  // extern "C"
