#include "side_by_side.h"

#include <sys/resource.h>

#include <algorithm>
#include <limits>

namespace {

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// The processor time that this process and the children it has waited for have used.
double usedSoFar() {
  double used = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage = {};
    getrusage(who, &usage);
    used += seconds(usage.ru_utime) + seconds(usage.ru_stime);
  }
  return used;
}

double seconds(const bench::Step &step) {
  const double before = usedSoFar();
  step();
  return usedSoFar() - before;
}

}  // namespace

namespace bench {

void timeSideBySide(benchmark::State &state, const Step &library, const Step &plain, const Step &prepare) {
  double fastest_library = std::numeric_limits<double>::infinity();
  double fastest_plain = fastest_library;
  for (auto _ : state) {
    prepare();
    const double with_library = seconds(library);
    prepare();
    fastest_plain = std::min(fastest_plain, seconds(plain));
    fastest_library = std::min(fastest_library, with_library);
    state.SetIterationTime(with_library);
  }
  state.counters["library_ms"] = 1e3 * fastest_library;
  state.counters["plain_ms"] = 1e3 * fastest_plain;
  state.counters["ratio"] = fastest_library / fastest_plain;
}

}  // namespace bench
