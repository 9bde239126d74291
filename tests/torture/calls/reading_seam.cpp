// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// recv and read of the C library, so that they can fail.
#include <sys/socket.h>
#include <unistd.h>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

ssize_t recv(int descriptor, void *data, size_t size, int flags) {
  static auto *const real = realFunction<ssize_t(int, void *, size_t, int)>("recv");
  Host *host = Host::current();
  const std::optional<int> failure = host == nullptr ? std::nullopt : host->calls.failure("recv");
  return failure ? *failure : real(descriptor, data, size, flags);
}

ssize_t read(int descriptor, void *data, size_t size) {
  static auto *const real = realFunction<ssize_t(int, void *, size_t)>("read");
  Host *host = Host::current();
  const std::optional<int> failure = host == nullptr ? std::nullopt : host->calls.failure("read");
  return failure ? *failure : real(descriptor, data, size);
}

}  // extern "C"
