// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/orda_exec.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <vector>

#include "host/lib/without_exceptions.h"

namespace {

constexpr int kNotRun = -1;
constexpr int kKilledBySignal = 128;  // plus the signal's number, as shells report it

/// Starts the program with the standard streams, but no other descriptor of the caller.
bool start(const std::vector<char *> &arguments, pid_t &child) {
  posix_spawn_file_actions_t actions;
  if (posix_spawn_file_actions_init(&actions) != 0) return false;
  bool started = posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1) == 0 &&
                 posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  return started;
}

int exitStatusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0)
    if (errno != EINTR) return kNotRun;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kKilledBySignal + WTERMSIG(status);
}

/// The program and its arguments, up to the null.
std::vector<char *> gather(const char *program, va_list &rest) {
  std::vector<char *> arguments{const_cast<char *>(program)};
  do arguments.push_back(va_arg(rest, char *));
  while (arguments.back());
  return arguments;
}

int run(const std::vector<char *> &arguments) {
  pid_t child = 0;
  return start(arguments, child) ? exitStatusOf(child) : kNotRun;
}

}  // namespace

/// Returns the exit status, 128 plus the signal's number for a killed program, -1 when it could not be started.
extern "C" int orda_exec(int, int, int, const char *program, ...) {
  if (!program) return kNotRun;
  va_list rest;
  va_start(rest, program);
  int status = withoutExceptions(kNotRun, [&] { return run(gather(program, rest)); });
  va_end(rest);
  return status;
}
