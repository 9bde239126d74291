// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A TCP socket that closes itself.
#pragma once

#include <netinet/in.h>

#include <cstdio>

namespace usbdev {

/// What is printed, and where, when no connection can be made.
struct ConnectMessages {
  FILE *stream;
  const char *no_socket;
  const char *no_connection;
};

class StreamSocket {
 public:
  /// Connects, or prints why not and tests false.
  StreamSocket(const sockaddr_in &address, const ConnectMessages &messages);
  ~StreamSocket();
  StreamSocket(const StreamSocket &) = delete;
  StreamSocket &operator=(const StreamSocket &) = delete;

  explicit operator bool() const { return descriptor_ >= 0; }
  int descriptor() const { return descriptor_; }
  /// Gives the open socket to the caller, who has to close it.
  int release();
  /// Sends without a signal when the peer has closed the connection; the count sent, or negative.
  long sendBytes(const void *bytes, std::size_t size) const;

 private:
  int descriptor_;
};

/// Looks a host up, first address first; several threads may at once. Prints "hp = NULL" on standard output when
/// there is none.
bool resolveHost(const char *host, int port, sockaddr_in &address);

}  // namespace usbdev
