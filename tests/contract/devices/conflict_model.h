// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The rules of conflicts and hand-overs once more, told as plainly as possible, to compare the library with.
#pragma once

#include <array>
#include <map>
#include <string>

#include "fake_config.h"

namespace contract {

class ConflictModel {
 public:
  using States = std::array<int, 10>;

  // The channels as the file has them, the nodes behind a bridge with the bridge's path, and the time as text.
  ConflictModel(const FakeConfig::Values &file, std::map<int, std::string> bridges, bool one_channel_host,
                std::string now);

  // What updateConflict answers with: the profile that takes over, or 99.
  int handOver(int channel, int value, int mode);
  // What getConflictCH answers with; -1 for none.
  int firstConflict(int channel) const;
  // What syncConflict makes of its states.
  States recompute(States states);

  // What was written to the file, in order.
  const Lines &writes() const { return writes_; }

 private:
  struct Channel {
    bool exists;
    int profile;
    int conflict;
    int node;
    bool switched_on;
    bool switched_on_by_default;
    std::string slot;
    std::string since;

    bool hasCamera() const { return exists && node != -1; }
    bool mayStream() const { return exists && profile != -1 && switched_on; }
  };

  std::string bridgeOf(int node) const;
  bool conflict(const Channel &other, const std::string &slot, const std::string &bridge) const;
  void park(int channel, int behind);

  std::array<Channel, 10> channels_;
  std::map<int, std::string> bridges_;
  bool one_channel_host_;
  std::string now_;
  Lines writes_;
};

}  // namespace contract
