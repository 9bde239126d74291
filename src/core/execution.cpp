// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/execution.h"

#include <platform/orda_exec.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

// The host library that carries it differs between hosts, and may be missing.
extern "C" decltype(orda_exec) orda_exec __attribute__((weak));

namespace usbdev {
namespace {

constexpr int kCouldNotRun = -1;

/// What the host's command execution does, for hosts without it.
int runDirectly(const char *program, const char *first, const char *second, const char *third) {
  // posix_spawn takes writable arguments and leaves them as they are.
  char *const arguments[] = {const_cast<char *>(program), const_cast<char *>(first), const_cast<char *>(second),
                             const_cast<char *>(third), nullptr};
  pid_t child = 0;
  if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0) return kCouldNotRun;
  int status = 0;
  while (waitpid(child, &status, 0) == -1) {
    if (errno != EINTR) return kCouldNotRun;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kCouldNotRun;
}

}  // namespace

int makeLink(const char *target, const char *link) {
  if (orda_exec == nullptr) return runDirectly("/bin/ln", "-sf", target, link);
  return orda_exec(0, 0, 0, "/bin/ln", "-sf", target, link, nullptr);
}

int removePath(const char *path) {
  if (orda_exec == nullptr) return runDirectly("/bin/rm", "-rf", path, nullptr);
  return orda_exec(0, 0, 0, "/bin/rm", "-rf", path, nullptr);
}

}  // namespace usbdev
