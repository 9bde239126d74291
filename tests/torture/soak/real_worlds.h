// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Twin worlds whose library keeps its configuration in a real file and sends to a manager that really listens.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "twin_worlds.h"

namespace soak {

class RealWorlds : public model::TwinWorlds {
 public:
  explicit RealWorlds(unsigned kind_of_host);
  ~RealWorlds() override;

  void store(int channel, const std::string &key, const std::string &value) override;
  // The interface of the configuration has no way to remove a key.
  void forget(int channel, const std::string &key) override;

  int datagrams() const { return datagrams_; }

 protected:
  bool looksAtStored() override { return ++operations_ % kLookEach == 0; }
  std::map<std::string, std::string> stored() override;
  std::map<std::string, std::string> storedStates() override;
  std::vector<std::string> sent() override;

 private:
  static constexpr int kLookEach = 20;  // operations, as parsing the file takes longer than most of them

  int operations_ = 0;
  int manager_;  // its socket
  int datagrams_ = 0;
};

}  // namespace soak
