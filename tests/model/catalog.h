// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The cameras and sound cards that somebody owns: alone, side by side on a port or a bridge, twins, and useless ones.
#pragma once

#include <vector>

#include "devices.h"

namespace model {

// One set of cameras for each value modulo 4: of every kind, all on one root port, all on two bridges, or on both.
const std::vector<Camera> &camerasOf(unsigned house);
const std::vector<Card> &cards();

}  // namespace model
