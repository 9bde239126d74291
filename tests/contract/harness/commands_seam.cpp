// popen, pclose and system of the C library, and the host's orda_exec, over the commands of the current host.
#include <platform/orda_exec.h>

#include <cstdarg>
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
  return host == nullptr ? real(command, mode) : host->commands.open(command, mode);
}

int pclose(FILE *stream) {
  static auto *const real = realFunction<int(FILE *)>("pclose");
  Host *host = Host::current();
  if (host == nullptr) return real(stream);
  if (host->commands.owns(stream)) return host->commands.close(stream);
  host->journal.violation("pclose of a stream that is not a child command");
  return -1;
}

int system(const char *command) {
  static auto *const real = realFunction<int(const char *)>("system");
  Host *host = Host::current();
  return host == nullptr ? real(command) : host->commands.system(command);
}

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
  return host->commands.execute(words);
}

}  // extern "C"
