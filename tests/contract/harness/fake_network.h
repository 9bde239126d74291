// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Datagrams that the library sends, kept instead of sent; and its connections, which reach only the servers of the
// test.
#pragma once

#include <netinet/in.h>
#include <sys/types.h>

#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "journal.h"

namespace contract {

struct Datagram {
  std::string bytes;
  std::string address;  // dotted
  int port = 0;
  int flags = 0;

  int word(size_t offset) const;  // 32 bits in host byte order
};

class FakeNetwork {
 public:
  explicit FakeNetwork(Journal &journal) : journal_(journal) {}

  void failSockets() { sockets_fail_ = true; }
  void failSends() { sends_fail_ = true; }
  // Of each datagram only this many bytes are reported as sent.
  void sendOnly(ssize_t bytes) { short_send_ = bytes; }

  // Connections to this port reach that one on the loopback address; all others are refused.
  void serve(int port, int actual_port);
  // Connections can be read from, but no longer written to.
  void breakConnections() { connections_break_ = true; }
  // The only host name that is known; addresses in numbers need none.
  void nameHost(const std::string &name) { host_name_ = name; }
  // What select answers without waiting, no socket being flagged.
  void answerSelect(int result) { select_answer_ = result; }

  // The texts given to send, one by one.
  Lines sent() const;
  // What select was asked, as "read 120.0".
  Lines waits() const;

  std::vector<Datagram> datagrams() const;
  int openSockets() const;

  // The interface itself.
  bool refusesSocket() const;
  void opened(int socket);
  void closed(int socket);
  ssize_t send(const void *data, size_t size, int flags, const sockaddr_in &to);
  // The port on the loopback address to connect to; 0 when nobody listens.
  int portBehind(const sockaddr_in &address);
  bool breaksConnections() const { return connections_break_; }
  bool knows(const std::string &name) const { return name == host_name_; }
  void sending(const void *data, size_t size, int flags);
  void waiting(const std::string &line);
  std::optional<int> selectAnswer() const { return select_answer_; }

 private:
  Journal &journal_;
  mutable std::mutex mutex_;
  std::vector<Datagram> datagrams_;
  std::array<std::atomic<bool>, 1024> sockets_{};  // without a lock, because a sanitizer that reports closes files too
  std::map<int, int> servers_;
  Lines sent_;
  Lines waits_;
  std::string host_name_;
  std::optional<int> select_answer_;
  bool connections_break_ = false;
  bool sockets_fail_ = false;
  bool sends_fail_ = false;
  ssize_t short_send_ = -1;
};

}  // namespace contract
