// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One run of a scenario with failing calls, and what it has to keep to.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "end_state.h"
#include "scenario.h"
#include "ways_to_fail.h"

namespace calls {

enum class Spread {
  once,
  all_from_here,   // this call and every later one
  same_from_here,  // this call and every later one of its name
};

struct Trial {
  size_t position;  // among the calls of the undisturbed run
  size_t way;       // the number among those of its call
  Spread spread;
};

// The scenario as it goes when nothing fails.
struct Undisturbed {
  contract::Lines calls;  // their names, in order
  int result = 0;
  EndState end;
  contract::Lines left_behind;
  std::set<std::string> stored;  // what was stored at any time
};

Undisturbed runUndisturbed(const Scenario &scenario);

// One call with each of these names after the other fails.
std::vector<Trial> trialsOf(const Undisturbed &undisturbed, const std::set<std::string> &failing);

// "the 3rd call, popen no process, and all after it"
std::string describe(const Trial &trial, const Undisturbed &undisturbed);

// The stages of a trial, for whoever sees only that it did not return.
enum class Stage { call, lock, laws };

// How a trial ends the process that it runs in.
constexpr int kEndless = 101;      // far more calls than without failures
constexpr int kEndedByCall = 102;  // the library called exit with status 0

// Told what a trial finds.
class Listener {
 public:
  virtual ~Listener() = default;
  virtual void reaches(Stage stage) = 0;
  virtual void fails(const std::string &call) = 0;
  virtual void leaves(const std::string &what) = 0;
  // An aspect of the end is another than without failures.
  virtual void differs(const std::string &aspect) = 0;
};

void run(const Scenario &scenario, const Trial &trial, const Undisturbed &undisturbed, Listener &listener);

}  // namespace calls
