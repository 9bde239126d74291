// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The memory functions of the test program and all its libraries: they can be made to fail ("memory"), and count.
#pragma once

#include "failing.h"

namespace failing {

/// Pieces of memory that are in use.
int piecesInUse();

}  // namespace failing
