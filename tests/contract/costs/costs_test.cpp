// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What each exported function costs: as much as it must, and no more; and the table that lists it.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "exported_names.h"
#include "output_capture.h"
#include "situations.h"

// No counters are made or read in the host's memory here.
extern "C" {
int shmget(key_t, size_t, int) noexcept { return 1; }
void *shmat(int, const void *, int) noexcept {
  static unsigned counters[4];
  return counters;
}
int shmdt(const void *) noexcept { return 0; }
}

namespace contract {
namespace {

// What one call may run again: the first for the file that it leaves, the second for another identifier each time.
const Names kMayRepeat{std::string("system ") + kProcessorCommand, std::string("popen ") + kUuidCommand};

const Situations &situations() {
  static const Situations all = [] {
    Situations gathered;
    for (const auto &part : {coreSituations(), deviceSituations(), conflictSituations(), eventSituations(),
                             startUpSituations(), assignmentSituations(), profileSituations(), webSituations()}) {
      gathered.insert(gathered.end(), part.begin(), part.end());
    }
    return gathered;
  }();
  return all;
}

std::string read(const std::string &path) {
  std::ifstream file(path);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

bool costsNothing(const Costs &costs) {
  return std::all_of(std::begin(kCostColumns), std::end(kCostColumns),
                     [&costs](const CostColumn &column) { return costs.*column.count == 0; });
}

std::string headOfTable() {
  std::string titles = "| Function | When |";
  std::string line = "\n|---|---|";
  for (const CostColumn &column : kCostColumns) {
    titles += std::string(" ") + column.title + " |";
    line += "---|";
  }
  return titles + line + "\n";
}

std::string row(const Situation &situation) {
  std::string text = "| `" + situation.function + "` | " + situation.when + " |";
  for (const CostColumn &column : kCostColumns) {
    const int count = situation.costs.*column.count;
    text += " " + (count == 0 ? "" : std::to_string(count)) + " |";
  }
  return text + "\n";
}

// The table as the documentation has it: the functions that cost something in some situation, and the rest by name.
std::string table() {
  Names busy;
  Names idle;
  for (const Situation &s : situations()) {
    if (!costsNothing(s.costs)) busy.insert(s.function);
  }
  std::string text = headOfTable();
  for (const Situation &s : situations()) {
    if (busy.count(s.function) == 0) {
      idle.insert(s.function);
    } else {
      text += row(s);
    }
  }
  text += "\nThese functions cost nothing of this:\n";
  for (const std::string &function : idle) text += "`" + function + (function == *idle.rbegin() ? "`.\n" : "`,\n");
  return text;
}

void play(const Situation &situation, Host &host) {
  const OutputCapture output(stdout);
  const OutputCapture errors(stderr);
  situation.play(host);
}

std::string whole(const Journal &journal) {
  std::string text;
  for (const std::string &line : journal.lines()) text += line + "\n";
  return text;
}

class AFunction : public testing::TestWithParam<Situation> {};

TEST_P(AFunction, CostsWhatItMustAndNoMore) {
  Host host;
  play(GetParam(), host);
  EXPECT_EQ(describe(countedOn(host)), describe(GetParam().costs)) << whole(host.journal);
  EXPECT_THAT(host.journal.violations(), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, AFunction, testing::ValuesIn(situations()), [](const auto &tested) {
  std::string name = tested.param.function + "_" + tested.param.when;
  for (char &c : name) c = isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
});

TEST(TheSituations, NameEveryExportedFunction) {
  Names named = kNotCalled;
  for (const Situation &s : situations()) named.insert(s.function);
  EXPECT_THAT(lacking(exportedNames(), named), testing::IsEmpty()) << "exported, without a situation";
  EXPECT_THAT(lacking(named, exportedNames()), testing::IsEmpty()) << "with a situation, not exported";
}

TEST(TheSituations, RunNothingAgainWhoseAnswerCouldBeKept) {
  for (const Situation &situation : situations()) {
    Host host;
    play(situation, host);
    const Lines repeated = repeatedOn(host);
    EXPECT_THAT(lacking({repeated.begin(), repeated.end()}, kMayRepeat), testing::IsEmpty())
        << testing::PrintToString(situation);
  }
}

TEST(TheTable, InTheDocumentationHasTheseCounts) {
  EXPECT_NE(read(DOCUMENT).find(table()), std::string::npos) << "docs/costs.md should hold:\n" << table();
}

}  // namespace
}  // namespace contract
