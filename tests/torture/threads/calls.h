// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every exported function, with one call of it that finds the settled host as the call before left it.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace torture {

/// Which calls of one process exclude each other. All others may run beside any call, one of the same function too.
enum class Turn { free, device_event, login };

struct Call {
  const char *function;
  std::function<std::string()> run;  // what it returned, and what it wrote into the caller's buffers
  Turn turn = Turn::free;
};

using Calls = std::vector<Call>;

Calls textCalls();
Calls hostCalls();
Calls deviceCalls();
Calls conflictCalls();
Calls profileCalls();
Calls hotplugCalls();
Calls requestCalls();
Calls shareCalls();

const Calls &allCalls();

inline bool mayRunTogether(const Call &a, const Call &b) { return a.turn == Turn::free || a.turn != b.turn; }

/// The result and the bytes of the buffers.
template <typename... Buffers>
std::string seen(int result, const Buffers &...buffers) {
  std::string all = std::to_string(result);
  ((all += "|", all.append(reinterpret_cast<const char *>(&buffers), sizeof buffers)), ...);
  return all;
}

}  // namespace torture
