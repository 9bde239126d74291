// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// orda_exec, the host's execution of commands, over the commands of the current host.
#include <platform/orda_exec.h>

#include <cstdarg>

#include "host.h"

using contract::Host;

extern "C" {

int orda_exec(int reserved1, int reserved2, int reserved3, const char *program, ...) {
  Host *host = Host::current();
  if (reserved1 != 0 || reserved2 != 0 || reserved3 != 0) host->journal.violation("orda_exec without three zeros");
  contract::Lines words{program};
  va_list arguments;
  va_start(arguments, program);
  for (const char *word = va_arg(arguments, const char *); word != nullptr; word = va_arg(arguments, const char *)) {
    words.push_back(word);
  }
  va_end(arguments);
  const std::optional<int> failure = host->calls.failure("orda_exec", program);
  return failure ? *failure : host->commands.execute(words);
}

}  // extern "C"
