// A long formats listing, parsed by the library and merely read with fgets: what does the parsing add?
#include <benchmark/benchmark.h>
#include <usbdev/devices.h>

#include <cstdio>

#include "listing_host.h"

namespace {

void readAlone(benchmark::State &state) {
  for (auto _ : state) {
    std::FILE *answer = popen(kListingQuery, "r");
    char line[256];
    int lines = 0;
    while (std::fgets(line, sizeof line, answer) != nullptr) ++lines;
    pclose(answer);
    if (lines != kListingLines) state.SkipWithError("the listing was not read whole");
    benchmark::DoNotOptimize(line);
  }
}
BENCHMARK(readAlone);

void parse(benchmark::State &state) {
  static _usbfmt_des table[USBDEV_FORMATS];
  for (auto _ : state) {
    int over60 = 0;
    const int formats = mn_get_usbchn_fmts(0, table, &over60);
    if (formats != kListingFormats || table[0].res_count != kListingSizes)
      state.SkipWithError("the listing was not kept whole");
  }
}
BENCHMARK(parse);

}  // namespace
