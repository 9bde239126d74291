// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// All scenarios, and what comes of them when calls fail.
#pragma once

#include "exported_names.h"
#include "series.h"

namespace calls {

// What the library calls on a host without orda_exec, where it runs programs itself: a test program of its own.
inline const contract::Names kOwnExecution{"posix_spawn", "waitpid"};

contract::Names functionsWithScenario();

// Lets each call of these names fail in each scenario, adds the figures of each room, and expects that nothing is
// found.
void failEvery(const contract::Names &failing, const std::string &whose);

}  // namespace calls
