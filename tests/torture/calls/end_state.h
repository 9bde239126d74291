// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What is left after a call, by which two runs are compared.
#pragma once

#include <map>
#include <string>

#include "scenario.h"

namespace calls {

// By aspect: the result, the caller's records, what is stored, the lines of the event log, the datagrams, the links,
// what was sent, the commands that were run for their effect, and the counters.
using EndState = std::map<std::string, std::string>;

EndState endState(World &world, int result, const Outputs &outputs);

// Both files of the configuration.
std::string storedText(const Host &host);

// What the call should not have left behind: handles, streams, sockets, children; and breaches of the host's rules.
contract::Lines leftBehind(World &world);

}  // namespace calls
