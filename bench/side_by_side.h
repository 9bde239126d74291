#pragma once

/// Two ways to do the same, timed in turns.
#include <benchmark/benchmark.h>

#include <functional>

namespace bench {

using Step = std::function<void()>;

/// Runs the library's way and the plain one once per iteration, each after a preparation that is not timed. What counts
/// is processor time, that of the commands included. The counters tell the least of each in milliseconds, as whatever
/// else the machine does only adds to a time, and their ratio.
void timeSideBySide(
    benchmark::State &state, const Step &library, const Step &plain, const Step &prepare = [] {});

}  // namespace bench
