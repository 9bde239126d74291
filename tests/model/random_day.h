// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A random day of the application, on a made-up host: each operation happens in the library and in the model, and both
// are compared after it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "choices.h"
#include "twin_worlds.h"

namespace model {

struct History {
  unsigned kind_of_host = 0;
  std::vector<Operation> operations;
};

// The first byte is the kind of host, the others are the operations; bytes of an incomplete one are ignored.
History historyOf(const uint8_t *bytes, size_t size);
History randomHistory(unsigned seed, int operations);

// Lets it happen in both worlds. Returns how they differ then, or "".
std::string happen(TwinWorlds &worlds, const Operation &operation);

class RandomDay {
 public:
  explicit RandomDay(unsigned kind_of_host) : worlds_(kind_of_host) {}

  std::string step(const Operation &operation) { return happen(worlds_, operation); }

  TwinWorlds &worlds() { return worlds_; }

 private:
  TwinWorlds worlds_;
};

// Runs a history up to the first difference. Returns a report of it, or "".
std::string differenceIn(const History &history);
// Drops whatever the difference does not need.
History shortest(History history);

}  // namespace model
