// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A TCP server on the loopback address for one connection. It sends its reply piece by piece, each piece only once the
// program waits for bytes, and then ends in one of several ways. What it waits for itself it waits for 20 seconds at
// most.
#pragma once

#include <string>
#include <thread>
#include <vector>

namespace contract {

struct Manner {
  enum class End {
    close,    // once the program waits for more
    reset,    // likewise
    none,     // the last piece again and again, until the program has gone
    no_ears,  // resets the connection with the request unread
  };

  std::vector<std::string> pieces;
  End end = End::close;
};

class HesitantServer {
 public:
  explicit HesitantServer(Manner manner);
  ~HesitantServer();
  HesitantServer(const HesitantServer &) = delete;
  HesitantServer &operator=(const HesitantServer &) = delete;

  int port() const { return port_; }
  // How many bytes the program asked for, each time that it waited before the connection ended.
  std::vector<size_t> lengthsAskedFor();

 private:
  void run();
  void serve(int connection);
  bool programWaits(int connection);

  Manner manner_;
  std::vector<size_t> lengths_;
  int listener_;
  int port_ = 0;
  std::thread thread_;
};

}  // namespace contract
