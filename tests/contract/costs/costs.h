// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a call costs outside the library, counted, and the sums that such counts are made of:
//   reading(3) + answers() + writing(2)
// is one pass that reads three keys, a command whose output is read, and one pass that writes two.
#pragma once

#include <string>

#include "host.h"

namespace contract {

struct Costs {
  int answers = 0;       // commands whose output is read
  int effects = 0;       // commands that are only run
  int programs = 0;      // programs that are run without a shell
  int read_opens = 0;    // configuration opened for reading
  int keys_read = 0;     // values read there
  int write_opens = 0;   // configuration opened for writing
  int keys_written = 0;  // values written there
  int files = 0;         // other files opened, the missing ones too
  int repeats = 0;       // of all commands and programs, those that the same call ran before
};

struct CostColumn {
  const char *title;
  int Costs::*count;
};

inline constexpr CostColumn kCostColumns[] = {
    {"Answers", &Costs::answers},           {"Effects", &Costs::effects},     {"Programs", &Costs::programs},
    {"Reads", &Costs::read_opens},          {"Keys read", &Costs::keys_read}, {"Writes", &Costs::write_opens},
    {"Keys written", &Costs::keys_written}, {"Files", &Costs::files},         {"Repeats", &Costs::repeats},
};

constexpr Costs operator+(Costs sum, const Costs &more) {
  for (const CostColumn &column : kCostColumns) sum.*column.count += more.*column.count;
  return sum;
}

constexpr Costs operator*(int times, Costs each) {
  for (const CostColumn &column : kCostColumns) each.*column.count *= times;
  return each;
}

constexpr Costs some(int Costs::*column, int count) {
  Costs costs;
  costs.*column = count;
  return costs;
}

constexpr Costs answers(int count = 1) { return some(&Costs::answers, count); }
constexpr Costs effects(int count = 1) { return some(&Costs::effects, count); }
constexpr Costs programs(int count = 1) { return some(&Costs::programs, count); }
constexpr Costs files(int count = 1) { return some(&Costs::files, count); }
constexpr Costs repeats(int count = 1) { return some(&Costs::repeats, count); }
constexpr Costs keysRead(int count) { return some(&Costs::keys_read, count); }
// One pass over the configuration.
constexpr Costs reading(int keys) { return some(&Costs::read_opens, 1) + keysRead(keys); }
constexpr Costs writing(int keys) { return some(&Costs::write_opens, 1) + some(&Costs::keys_written, keys); }

// What the journal of a host holds.
Costs countedOn(const Host &host);
// The commands and programs that ran again, once for each time.
Lines repeatedOn(const Host &host);

// "answers 3, keys read 14", without what is zero; "nothing".
std::string describe(const Costs &costs);

}  // namespace contract
