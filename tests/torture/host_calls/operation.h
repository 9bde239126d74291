// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host's libraries are asked to do, once each, and what must be true after it whatever failed meanwhile.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

struct Result {
  bool succeeded;          // by what the library reported
  bool everything_failed;  // from some call on
};

struct Operation {
  std::string name;
  std::function<void()> prepare;      // before anything fails
  std::function<bool()> run;          // returns whether the library reported success
  std::function<void(Result)> judge;  // checks what was done, when nothing fails any more
  bool succeeds = true;               // where nothing fails
};

inline void PrintTo(const Operation &operation, std::ostream *out) { *out << operation.name; }

std::vector<Operation> configurationOperations();
std::vector<Operation> eventLogOperations();
std::vector<Operation> soundCardOperations();
std::vector<Operation> executionOperations();
