// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// These stand in for the C library's calls, also where another library calls them.
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/select.h>
#include <sys/shm.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

#include "failing.h"

namespace {

template <typename Function>
Function *real(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

constexpr bool kWaits = true;
constexpr int kErrorSeen = 0x20;  // what ferror() looks at

using Open = int(const char *, int, ...);
using Control = int(int, int, ...);

void markFailed(FILE *stream) {
  if (stream != nullptr) stream->_flags |= kErrorSeen;
}

bool takesMode(int flags) { return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE; }

}  // namespace

extern "C" {

#define FAILING_CALL(result, name, parameters, arguments, failure, waits, specification) \
  result name parameters specification {                                                 \
    static auto *const function = real<result parameters>(#name);                        \
    return failing::mustFail(#name, waits) ? failure : function arguments;               \
  }
#define FAILING_AFTERWARDS(result, name, parameters, arguments, failure, specification) \
  result name parameters specification {                                                \
    static auto *const function = real<result parameters>(#name);                       \
    const result done = function arguments;                                             \
    return failing::mustFail(#name) ? failure : done;                                   \
  }
#define FAILING_STREAM(result, name, parameters, arguments, failure)  \
  result name parameters {                                            \
    static auto *const function = real<result parameters>(#name);     \
    if (!failing::mustFail(#name, kWaits)) return function arguments; \
    markFailed(stream);                                               \
    return failure;                                                   \
  }
#include "failing_calls.def"
#undef FAILING_CALL
#undef FAILING_AFTERWARDS
#undef FAILING_STREAM

/// Writes a part in a test, as a disk may that is nearly full.
ssize_t write(int descriptor, const void *buffer, size_t size) {
  static auto *const function = real<ssize_t(int, const void *, size_t)>("write");
  const size_t part = failing::isOn() && size > 8192 ? size / 2 : size;
  return failing::mustFail("write", kWaits) ? -1 : function(descriptor, buffer, part);
}

int open(const char *path, int flags, ...) {
  static auto *const function = real<Open>("open");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return failing::mustFail("open", kWaits) ? -1 : function(path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...) {
  static auto *const function = real<int(int, const char *, int, ...)>("openat");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return failing::mustFail("openat", kWaits) ? -1 : function(folder, path, flags, mode);
}

int open64(const char *path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = takesMode(flags) ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return open(path, flags, mode);
}

int fcntl64(int descriptor, int command, ...) {
  static auto *const function = real<Control>("fcntl64");
  va_list rest;
  va_start(rest, command);
  void *argument = va_arg(rest, void *);
  va_end(rest);
  return failing::mustFail("fcntl", kWaits) ? -1 : function(descriptor, command, argument);
}

int fcntl(int descriptor, int command, ...) {
  va_list rest;
  va_start(rest, command);
  void *argument = va_arg(rest, void *);
  va_end(rest);
  return fcntl64(descriptor, command, argument);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
  static auto *const function = real<int(int, unsigned long, ...)>("ioctl");
  va_list rest;
  va_start(rest, request);
  void *argument = va_arg(rest, void *);
  va_end(rest);
  return failing::mustFail("ioctl") ? -1 : function(descriptor, request, argument);
}

/// Passes no time in a test: some calls are tried again for seconds.
int usleep(useconds_t microseconds) {
  static auto *const function = real<int(useconds_t)>("usleep");
  return failing::isOn() ? 0 : function(microseconds);
}

}  // extern "C"
