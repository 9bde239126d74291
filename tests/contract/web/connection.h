// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One end of a connection for the library, the other for the test.
#pragma once

#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "contract_test.h"

namespace contract {

class AConnection : public ContractTest {
 protected:
  AConnection() { EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_), 0); }
  ~AConnection() override {
    close(ends_[0]);
    if (ends_[1] >= 0) close(ends_[1]);
  }

  int sock() const { return ends_[0]; }
  void peerSends(const std::string &bytes) {
    EXPECT_EQ(write(ends_[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }
  void peerCloses() {
    close(ends_[1]);
    ends_[1] = -1;
  }
  // What the peer has not read when it closes breaks a connection of this kind.
  void breakBehind(const std::string &bytes) {
    EXPECT_EQ(write("unread"), 6);
    peerSends(bytes);
    peerCloses();
  }
  std::string peerReceives() {
    char bytes[8192];
    const ssize_t got = recv(ends_[1], bytes, sizeof bytes, MSG_DONTWAIT);
    return got < 0 ? "" : std::string(bytes, static_cast<size_t>(got));
  }
  // A read of at most this length, into a buffer with guards.
  int read(int length) {
    received = std::string(16, '#');
    OutputCapture output;
    const int result = socket_read(sock(), received.data(), length);
    said = output.text();
    return result;
  }
  int write(const std::string &text) {
    OutputCapture output;
    const int result = socket_write(sock(), text.c_str());
    said = output.text();
    return result;
  }
  int readLine(int max) {
    received = std::string(16, '#');
    OutputCapture output;
    return http_read_line(sock(), received.data(), max);
  }

  std::string received;
  std::string said;

 private:
  static ssize_t write(int descriptor, const char *bytes, size_t size) { return ::write(descriptor, bytes, size); }
  int ends_[2] = {-1, -1};
};

}  // namespace contract
