// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A TCP server on the loopback address that answers one connection after the other as its script states, and
// waits 20 seconds at most for each.
#pragma once

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "journal.h"

namespace contract {

struct Answer {
  enum class End { close, reset };

  std::string bytes;
  End end = End::close;
  std::string until = "\r\n\r\n";  // the request is read up to here; "" = not at all
  bool in_single_bytes = false;
};

class ScriptedServer {
 public:
  // Goes through the script once, or again and again until it is destroyed.
  enum class Repeats { once, for_ever };

  explicit ScriptedServer(std::vector<Answer> script, Repeats repeats = Repeats::once);
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer &) = delete;
  ScriptedServer &operator=(const ScriptedServer &) = delete;

  int port() const { return port_; }
  // The requests that it has read, once the whole script is done.
  Lines requests();

 private:
  void run();
  bool serve(const Answer &next);
  void answer(int connection, const Answer &answer);

  std::vector<Answer> script_;
  bool for_ever_;
  Lines requests_;
  int listener_;
  int port_ = 0;
  std::thread thread_;
};

}  // namespace contract
