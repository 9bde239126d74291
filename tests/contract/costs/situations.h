// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every exported function in its typical situations, with what it costs there and no more.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "attached_camera.h"
#include "contract_test.h"
#include "encoding_host.h"
#include "record_text.h"
#include "steps.h"
#include "stream_links.h"

namespace contract {

struct Situation {
  std::string function;
  std::string when;
  Costs costs;
  std::function<void(Host &)> play;  // describes the host and calls the function once
};

using Situations = std::vector<Situation>;

inline void PrintTo(const Situation &situation, std::ostream *out) {
  *out << situation.function << (situation.when.empty() ? "" : ": ") << situation.when;
}

Situations coreSituations();
Situations deviceSituations();
Situations conflictSituations();
Situations eventSituations();
Situations startUpSituations();
Situations assignmentSituations();
Situations profileSituations();
Situations webSituations();

}  // namespace contract
