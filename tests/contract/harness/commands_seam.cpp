// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// popen, pclose and system of the C library, over the commands of the current host.
#include <cstdio>
#include <cstdlib>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

FILE *popen(const char *command, const char *mode) {
  static auto *const real = realFunction<FILE *(const char *, const char *)>("popen");
  Host *host = Host::current();
  if (host == nullptr) return real(command, mode);
  return host->calls.failure("popen", command) ? nullptr : host->commands.open(command, mode);
}

int pclose(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("pclose");
  Host *host = Host::current();
  if (host == nullptr) return real(stream);
  if (host->commands.owns(stream)) {
    const std::optional<int> failure = host->calls.failure("pclose", host->streamName(stream));
    const int result = host->commands.close(stream);
    return failure ? *failure : result;
  }
  host->journal.violation("pclose of a stream that is not a child command");
  return -1;
}

int system(const char *command) {
  static auto *const real = realFunction<int(const char *)>("system");
  Host *host = Host::current();
  if (host == nullptr) return real(command);
  const std::optional<int> failure = host->calls.failure("system", command);
  return failure ? *failure : host->commands.system(command);
}

}  // extern "C"
