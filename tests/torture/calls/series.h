// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// All trials of a scenario, in processes of their own, so that one that dies or hangs is a finding like any other.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "exported_names.h"
#include "scenario.h"
#include "trial.h"

namespace calls {

enum class Law { crash, hang, lock, leak, half_done, false_success };

struct Findings {
  size_t scenarios = 0;
  size_t calls = 0;   // in undisturbed runs, that may fail
  size_t trials = 0;  // runs in which some fail
  size_t excused = 0;
  std::map<Law, size_t> breaches;
  std::vector<std::string> texts;    // what was found, the first of each kind in each scenario
  std::set<size_t> used_exceptions;  // their numbers
  contract::Names failed;            // the names of the calls that failed

  void add(const Findings &more);
};

// One of so many trials is made: in a short run with a sanitizer some are left out, of all kinds in turn.
size_t trialStep();

// Of the calls with these names.
void runAllTrials(const Scenario &scenario, const Undisturbed &undisturbed, const contract::Names &failing,
                  Findings &findings);

// "117 scenarios, 3012 outside calls, 40123 failing runs: 0 crashes, ..."
std::string describe(const Findings &findings);

}  // namespace calls
