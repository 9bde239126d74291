// Datagrams that the library sends, kept instead of sent. Stream sockets work as ever.
#ifndef CONTRACT_HARNESS_FAKE_NETWORK_H
#define CONTRACT_HARNESS_FAKE_NETWORK_H

#include <netinet/in.h>
#include <sys/types.h>

#include <mutex>
#include <set>
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

  std::vector<Datagram> datagrams() const;
  int openSockets() const;

  // The interface itself.
  bool refusesSocket();
  void opened(int socket);
  void closed(int socket);
  ssize_t send(const void *data, size_t size, int flags, const sockaddr_in &to);

 private:
  Journal &journal_;
  mutable std::mutex mutex_;
  std::vector<Datagram> datagrams_;
  std::set<int> sockets_;
  bool sockets_fail_ = false;
  bool sends_fail_ = false;
  ssize_t short_send_ = -1;
};

}  // namespace contract

#endif
