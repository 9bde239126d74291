// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// An exported function in one of its successes: the host that it meets there, and how it is called.
#pragma once

#include <array>
#include <cstring>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "attached_camera.h"
#include "contract_test.h"
#include "encoding_host.h"
#include "record_text.h"
#include "scripted_server.h"
#include "stream_links.h"

namespace calls {

using contract::Host;

// The host, and whom a call is connected with.
struct World {
  World();
  ~World();
  World(const World &) = delete;
  World &operator=(const World &) = delete;

  // A server for connections to this port; each gets the next of these replies.
  void serve(int port, const std::vector<std::string> &replies);
  // A connection whose other end has sent these bytes and sends no more.
  void connection(const std::string &received);

  Host host;
  int sock = -1;

 private:
  std::optional<contract::ScriptedServer> server_;
  int peer_ = -1;
};

// What a caller hands over to be filled.
class Outputs {
 public:
  // A record; without a content, with bytes that nobody writes.
  template <typename Record>
  Record &record(const Record &content = contract::untouched<Record>()) {
    before_.append(reinterpret_cast<const char *>(&content), sizeof content);
    Record *kept = reinterpret_cast<Record *>(kept_.emplace_back(sizeof content).data());
    memcpy(static_cast<void *>(kept), &content, sizeof content);
    return *kept;
  }
  char *text(const std::string &content = "");

  std::string before() const { return before_; }
  std::string now() const;

 private:
  std::deque<std::vector<char>> kept_;
  std::string before_;
};

struct Scenario {
  std::string function;
  std::string when;
  std::function<void(World &)> describe;
  std::function<int(World &, Outputs &)> call;  // its result
  int failure = -1;                             // the result that tells of one, besides every other negative result

  std::string name() const { return function + (when.empty() ? "" : ": ") + when; }
  bool tellsFailure(int result) const { return result < 0 || result == failure; }
};

using Scenarios = std::vector<Scenario>;

// By the rooms of the library.
Scenarios coreScenarios();
Scenarios deviceScenarios();
Scenarios conflictScenarios();
Scenarios hotplugScenarios();
Scenarios startUpScenarios();
Scenarios assignmentScenarios();
Scenarios profileScenarios();
Scenarios connectionScenarios();
Scenarios shareScenarios();

Scenarios operator+(Scenarios all, const Scenarios &more);

// A host on which nothing is described.
inline void emptyHost(World &) {}

}  // namespace calls
