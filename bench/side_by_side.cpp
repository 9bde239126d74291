#include "side_by_side.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace {

double seconds(const bench::Step &step) {
  const auto start = std::chrono::steady_clock::now();
  step();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
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
