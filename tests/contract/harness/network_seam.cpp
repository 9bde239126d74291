// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// socket, close and sendto of the C library, watched for the current host.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

int socket(int domain, int type, int protocol) noexcept {
  static auto *const real = realFunction<int(int, int, int)>("socket");
  Host *host = Host::current();
  if (host == nullptr) return real(domain, type, protocol);
  if ((type & SOCK_CLOEXEC) == 0) host->journal.violation("socket that child processes inherit");
  if (host->calls.failure("socket") || host->network.refusesSocket()) return -1;
  const int made = real(domain, type, protocol);
  host->network.opened(made);
  return made;
}

int close(int descriptor) {
  static auto *const real = realFunction<int(int)>("close");
  Host *host = Host::current();
  if (host == nullptr) return real(descriptor);
  const std::optional<int> failure = host->calls.failure("close");
  host->network.closed(descriptor);
  const int result = real(descriptor);
  return failure ? *failure : result;
}

ssize_t sendto(int descriptor, const void *data, size_t size, int flags, const sockaddr *to, socklen_t to_size) {
  static auto *const real =
      realFunction<ssize_t(int, const void *, size_t, int, const sockaddr *, socklen_t)>("sendto");
  Host *host = Host::current();
  if (host == nullptr || to == nullptr || to->sa_family != AF_INET) {
    return real(descriptor, data, size, flags, to, to_size);
  }
  sockaddr_in address{};
  memcpy(&address, to, sizeof address);
  const std::optional<int> failure = host->calls.failure("sendto");
  if (failure && *failure < 0) return *failure;
  return host->network.send(data, failure ? static_cast<size_t>(*failure) : size, flags, address);
}

}  // extern "C"
