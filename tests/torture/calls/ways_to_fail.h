// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// How each outside call of the library may fail, and which of them cannot.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace calls {

struct Way {
  const char *call;
  const char *how;
  int result;
  int error = 0;
  bool for_ever = true;  // an interruption comes once
};

// All of one call, the usual one first.
const std::vector<Way> &waysOf(const std::string &call);

// Every call that has ways.
std::vector<std::string> failableCalls();

// The other symbols that the library needs, with the reason why they cannot fail, or not so that anyone sees it.
const std::map<std::string, std::string> &neverFailing();

}  // namespace calls
