// Every exported function in its typical situations, with the child processes that it needs there and no more.
#ifndef CONTRACT_CHILDREN_SITUATIONS_H
#define CONTRACT_CHILDREN_SITUATIONS_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "contract_test.h"
#include "encoding_host.h"
#include "record_text.h"

namespace contract {

struct Children {
  int answers = 0;   // commands whose output is read
  int effects = 0;   // commands that are only run
  int programs = 0;  // programs that are run without a shell

  bool any() const { return answers != 0 || effects != 0 || programs != 0; }
};

struct Situation {
  std::string function;
  std::string when;
  Children children;
  std::function<void(Host &)> play;  // describes the host and calls the function once
};

using Situations = std::vector<Situation>;

inline void PrintTo(const Situation &situation, std::ostream *out) {
  *out << situation.function << (situation.when.empty() ? "" : ": ") << situation.when;
}

Situations coreSituations();
Situations deviceSituations();
Situations hotplugSituations();
Situations profileSituations();
Situations webSituations();

// An attached camera on a channel, its slot switched on, that offers MJPEG.
HostChannel cameraOn(Host &host, int channel, const std::string &slot, int node, int profile = -1);

// A link below the application's folder.
void linkOnDisk(Host &host, const std::string &name);

// What plugging a camera in needs when no other channel is there: the processor file, the codec package, the formats,
// a format query that still runs, and the device walk.
inline constexpr Children kLoneCamera{4, 1, 0};
// Of these, what its formats need.
inline constexpr Children kFormats{3, 1, 0};

}  // namespace contract

#endif
