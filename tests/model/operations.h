// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What may happen in a random day.
#pragma once

#include <vector>

#include "choices.h"
#include "twin_worlds.h"

namespace model {

struct Happening {
  int weight;  // how often, in comparison with the others
  void (*run)(TwinWorlds &, Choices &);
};

const std::vector<Happening> &deviceHappenings();
const std::vector<Happening> &settingHappenings();
const std::vector<Happening> &sharingHappenings();
const std::vector<Happening> &queryHappenings();

}  // namespace model
