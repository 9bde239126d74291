// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Time-out counters, one per profile, that any process of the host may add to and read.
#pragma once

namespace usbdev {

/// Finds or makes the shared memory of the counters; its id, or -1.
int findTimeoutCounters();

/// Attaches shared memory to this process; null where that fails.
void *attachTimeoutCounters(int id);

void clearTimeoutCounters(void *counters);

/// Adds a time-out of a profile; false, with a message, when the counters cannot be reached.
bool countTimeout(int profile);

}  // namespace usbdev
