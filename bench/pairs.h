// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Two ways to do the same, compared in turns.
#include <functional>

namespace bench {

using Step = std::function<void()>;

struct Ways {
  Step library;
  Step plain;
  Step prepare = [] {};  // runs before each step and is not timed
};

/// Takes turns until the interval of the ratio's median lies on one side of the bound, or for so long that it will stay
/// undecided, and prints "ratio low high turns library-ms plain-ms". What counts is the processor time of this thread
/// and of the commands that it runs. Returns a program's exit status.
int compare(double bound, const Ways &ways);

}  // namespace bench
