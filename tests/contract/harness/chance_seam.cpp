// time, sleep, rand and srand of the C library, over the current host.
#include <unistd.h>

#include <cstdlib>
#include <ctime>

#include "host.h"
#include "real_function.h"

using contract::Host;
using contract::realFunction;

extern "C" {

time_t time(time_t *out) noexcept {
  static auto *const real = realFunction<time_t(time_t *)>("time");
  Host *host = Host::current();
  if (host == nullptr || host->chance.now == -1) return real(out);
  if (out != nullptr) *out = host->chance.now;
  return host->chance.now;
}

// Passes no time, but leaves its line.
unsigned sleep(unsigned seconds) {
  static auto *const real = realFunction<unsigned(unsigned)>("sleep");
  Host *host = Host::current();
  if (host == nullptr) return real(seconds);
  host->journal.add("sleep " + std::to_string(seconds));
  return 0;
}

int rand(void) noexcept {
  static auto *const real = realFunction<int()>("rand");
  Host *host = Host::current();
  return host == nullptr || host->chance.random == -1 ? real() : host->chance.random.load();
}

void srand(unsigned seed) noexcept {
  static auto *const real = realFunction<void(unsigned)>("srand");
  if (Host *host = Host::current()) {
    host->chance.seed = seed;
    ++host->chance.seedings;
  }
  real(seed);
}

}  // extern "C"
