// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "children.h"

#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

namespace calls {
namespace {

constexpr pid_t kChild = 4711;
int children = 0;

}  // namespace

bool hasChildren() { return children != 0; }

void forgetChildren() { children = 0; }

}  // namespace calls

extern "C" {

int posix_spawn(pid_t *child, const char *path, const posix_spawn_file_actions_t *, const posix_spawnattr_t *,
                char *const arguments[], char *const[]) {
  Host *host = Host::current();
  if (const auto failure = host->calls.failure("posix_spawn", path)) return *failure;
  contract::Lines words;
  for (char *const *word = arguments; *word != nullptr; ++word) words.push_back(*word);
  host->commands.execute(words);
  ++calls::children;
  *child = calls::kChild;
  return 0;
}

pid_t waitpid(pid_t child, int *status, int options) {
  static auto *const real = realFunction<pid_t(pid_t, int *, int)>("waitpid");
  Host *host = Host::current();
  if (host == nullptr) return real(child, status, options);
  const auto failure = host->calls.failure("waitpid");
  if (failure && *failure < 0) {
    if (errno == ECHILD) calls::forgetChildren();  // as where children are not waited for
    return -1;
  }
  --calls::children;
  *status = failure ? *failure << 8 : 0;
  return child;
}

}  // extern "C"
