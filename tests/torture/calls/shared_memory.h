// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The segment of shared memory with the time-out counters, made up: shmget, shmat and shmdt of the C library find it.
#pragma once

#include <string>

namespace calls {

inline constexpr int kSegment = 7;

// Before a run: whether there is a segment, with counters of 5.
void makeSegment();
void forgetSegment();
// The caller of the library keeps what he was given.
void leaveAttached();

// After it.
bool isAttached();
std::string countersText();

}  // namespace calls
