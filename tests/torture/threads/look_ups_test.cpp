// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Names that many threads look up at once, in a hosts file of the test's own.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <atomic>
#include <string>

#include "crew.h"
#include "own_network.h"
#include "private_host.h"
#include "thoroughness.h"

namespace torture {
namespace {

constexpr int kNames = 100;

std::string name(int number) { return "nas" + std::to_string(number) + ".local"; }
std::string address(int number) { return "127.0.1." + std::to_string(number); }

class LookUps : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(contract::enterNetworkOfItsOwn());
    std::string hosts;
    for (int i = 0; i < kNames; ++i) hosts += address(i) + " " + name(i) + "\n";
    writeFile("/etc/hosts", hosts);
    writeFile("/etc/nsswitch.conf", "hosts: files\n");
    ASSERT_TRUE(listenOnEveryAddress());
  }
  void TearDown() override { close(listener_); }

  /// The address that the library connected to; "" when it could not.
  static std::string connectedTo(const std::string &host) {
    int sock = -1;
    if (http_open(&sock, host.c_str()) != 0) return "";
    sockaddr_in peer{};
    socklen_t size = sizeof peer;
    getpeername(sock, reinterpret_cast<sockaddr *>(&peer), &size);
    http_close(sock);
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &peer.sin_addr, text, sizeof text);
    return text;
  }

  /// Takes what waits to be accepted, so that the next ones find room.
  void acceptAll() const {
    for (int connection = 0; connection >= 0;) {
      connection = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK);
      if (connection >= 0) close(connection);
    }
  }

 private:
  bool listenOnEveryAddress() {
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    sockaddr_in every{};
    every.sin_family = AF_INET;
    every.sin_port = htons(80);
    return bind(listener_, reinterpret_cast<const sockaddr *>(&every), sizeof every) == 0 &&
           listen(listener_, SOMAXCONN) == 0;
  }

  int listener_ = -1;
};

TEST_P(LookUps, GiveEachThreadTheAddressOfItsOwnName) {
  Crew crew(GetParam());
  std::atomic<int> wrong{0};
  for (int round = 0; round < times(10, 1000); ++round) {
    crew.run([&](int member) {
      const int number = (round * 7 + member * 3) % kNames;
      if (connectedTo(name(number)) != address(number)) ++wrong;
      if (connectedTo("unknown.local") != "") ++wrong;
    });
    acceptAll();
  }
  EXPECT_EQ(wrong, 0);
  report("threads: name look-ups of " + std::to_string(GetParam()) + " threads, each got its own answer");
}

INSTANTIATE_TEST_SUITE_P(Of, LookUps, testing::Values(8, 32));

}  // namespace
}  // namespace torture
