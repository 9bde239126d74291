// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "pairs.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

constexpr std::size_t kFewestTurns = 15;
constexpr std::size_t kMostTurns = 150;

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

/// Of this thread and of the commands that it has waited for.
double usedSoFar() {
  timespec own = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &own);  // exact, while getrusage lags for a running thread
  rusage commands = {};
  getrusage(RUSAGE_CHILDREN, &commands);
  return static_cast<double>(own.tv_sec) + 1e-9 * static_cast<double>(own.tv_nsec) + seconds(commands.ru_utime) +
         seconds(commands.ru_stime);
}

double timeOf(const bench::Step &step, const bench::Step &prepare) {
  prepare();
  const double before = usedSoFar();
  step();
  return usedSoFar() - before;
}

struct Turn {
  double library = 0;
  double plain = 0;
  double ratio() const { return library / plain; }
};

/// One way, the other one twice, and the first again: a machine that grows slower or faster meanwhile favours neither.
Turn takeTurn(const bench::Ways &ways) {
  Turn turn;
  turn.library = timeOf(ways.library, ways.prepare);
  turn.plain = timeOf(ways.plain, ways.prepare);
  turn.plain += timeOf(ways.plain, ways.prepare);
  turn.library += timeOf(ways.library, ways.prepare);
  return turn;
}

struct Interval {
  double low, median, high;
  bool decides(double bound) const { return high <= bound || low > bound; }
};

/// The median of the ratios, and the two of them between which that of endless turns lies in 95 of 100 cases, however
/// the ratios are spread: as many of n ratios lie below it as heads fall in n throws of a coin.
Interval intervalOf(const std::vector<Turn> &turns) {
  std::vector<double> ratios;
  for (const Turn &turn : turns) ratios.push_back(turn.ratio());
  std::sort(ratios.begin(), ratios.end());
  const double count = static_cast<double>(ratios.size());
  const auto below = static_cast<std::size_t>(std::max(std::floor(count / 2 - 0.98 * std::sqrt(count)), 1.0));
  return {ratios[below - 1], ratios[ratios.size() / 2], ratios[ratios.size() - below]};
}

double fastest(const std::vector<Turn> &turns, double Turn::*way) {
  const auto least =
      std::min_element(turns.begin(), turns.end(), [way](const Turn &a, const Turn &b) { return a.*way < b.*way; });
  return (*least).*way / 2;
}

}  // namespace

int bench::compare(double bound, const Ways &ways) {
  std::vector<Turn> turns;
  Interval interval = {};
  do {
    turns.push_back(takeTurn(ways));
    interval = intervalOf(turns);
  } while (turns.size() < kFewestTurns || (turns.size() < kMostTurns && !interval.decides(bound)));
  std::printf("%.4f %.4f %.4f %zu %.3f %.3f\n", interval.median, interval.low, interval.high, turns.size(),
              1e3 * fastest(turns, &Turn::library), 1e3 * fastest(turns, &Turn::plain));
  return 0;
}
