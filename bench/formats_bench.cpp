// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A long formats listing, parsed by the library and merely read with fgets: what does the parsing add?
#include <usbdev/devices.h>

#include <cstdio>
#include <cstdlib>

#include "listing_host.h"
#include "pairs.h"

namespace {

constexpr int kListingsAtOnce = 50;

void readAlone() {
  std::FILE *answer = popen(kListingQuery, "r");
  char line[256];
  int lines = 0;
  while (std::fgets(line, sizeof line, answer) != nullptr) ++lines;
  pclose(answer);
  if (lines != kListingLines) std::abort();
}

void parse() {
  static _usbfmt_des table[USBDEV_FORMATS];
  int over60 = 0;
  const int formats = mn_get_usbchn_fmts(0, table, &over60);
  if (formats != kListingFormats || table[0].res_count != kListingSizes) std::abort();
}

template <typename Run>
bench::Step often(Run run) {
  return [run] {
    for (int i = 0; i < kListingsAtOnce; ++i) run();
  };
}

}  // namespace

int main(int, char **argv) { return bench::compare(std::atof(argv[1]), {often(parse), often(readAlone)}); }
