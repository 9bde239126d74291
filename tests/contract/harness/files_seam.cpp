// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// fopen, fclose, stat and lstat of the C library, redirected for the paths of the current host.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "host.h"
#include "real_function.h"

using contract::FakeFiles;
using contract::Host;
using contract::realFunction;

namespace {

int answer(bool exists, struct stat *status) {
  if (!exists) {
    errno = ENOENT;
    return -1;
  }
  *status = {};
  status->st_mode = S_IFREG | 0644;
  return 0;
}

}  // namespace

extern "C" {

FILE *fopen(const char *path, const char *mode) {
  static auto *const real = realFunction<FILE *(const char *, const char *)>("fopen");
  Host *host = Host::current();
  if (host == nullptr || !FakeFiles::isHostPath(path)) return real(path, mode);
  return host->calls.failure("fopen", path) ? nullptr : host->files.open(path, mode);
}

int fclose(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("fclose");
  Host *host = Host::current();
  if (host == nullptr) return real(stream);
  if (host->files.owns(stream)) {
    const std::optional<int> failure = host->calls.failure("fclose", host->streamName(stream));
    const int result = host->files.close(stream);
    return failure ? *failure : result;
  }
  if (host->commands.owns(stream)) host->journal.violation("child command closed with fclose");
  return real(stream);
}

int stat(const char *path, struct stat *status) noexcept {
  static auto *const real = realFunction<int(const char *, struct stat *)>("stat");
  Host *host = Host::current();
  if (host == nullptr || !FakeFiles::isHostPath(path)) return real(path, status);
  host->journal.add(std::string("stat ") + path);
  if (const std::optional<int> failure = host->calls.failure("stat", path)) return *failure;
  return answer(host->files.exists(path), status);
}

int lstat(const char *path, struct stat *status) noexcept {
  static auto *const real = realFunction<int(const char *, struct stat *)>("lstat");
  Host *host = Host::current();
  if (host == nullptr || !FakeFiles::isHostPath(path)) return real(path, status);
  host->journal.add(std::string("lstat ") + path);
  if (const std::optional<int> failure = host->calls.failure("lstat", path)) return *failure;
  return answer(host->files.existsItself(path), status);
}

}  // extern "C"
