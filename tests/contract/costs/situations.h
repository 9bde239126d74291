// Every exported function in its typical situations, with what it costs there and no more.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

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

// A camera as the host's tools describe it: known vendor and product, MJPEG.
HostCamera plugged(Host &host, const std::string &slot, int node);

// The same on a channel, its slot switched on.
HostChannel cameraOn(Host &host, int channel, const std::string &slot, int node, int profile = -1);

// A link below the application's folder.
void linkOnDisk(Host &host, const std::string &name);

// Answers for the commands that make a link's name.
void makeIdentifiers(Host &host);

}  // namespace contract
