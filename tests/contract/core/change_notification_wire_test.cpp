// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The change notification on a real socket, in a network of its own.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstring>
#include <string>

#include "own_network.h"

namespace {

class TheManager : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(contract::enterNetworkOfItsOwn()); }

  void listen() {
    receiver_ = socket(AF_INET, SOCK_DGRAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(10171);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(bind(receiver_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  }
  void TearDown() override {
    if (receiver_ >= 0) close(receiver_);
  }
  // A datagram that was sent over the loopback has arrived when the send returns.
  std::string received() const {
    char bytes[128];
    const ssize_t size = recv(receiver_, bytes, sizeof bytes, MSG_DONTWAIT);
    return size < 0 ? "" : std::string(bytes, static_cast<size_t>(size));
  }

  const std::string datagram = "ORDA_VLM2_CFCG_N" + std::string(40, '\x05');

 private:
  int receiver_ = -1;
};

TEST_F(TheManager, ReceivesTheFiftySixBytesAsTheyWereGiven) {
  listen();
  EXPECT_EQ(vl_settingNotify(datagram.data()), 0);
  EXPECT_EQ(received(), datagram);
}

TEST_F(TheManager, ReceivesOneDatagramForEachNotification) {
  listen();
  vl_settingNotify(datagram.data());
  vl_settingNotify(datagram.data());
  EXPECT_EQ(received().size(), 56U);
  EXPECT_EQ(received().size(), 56U);
  EXPECT_EQ(received(), "");
}

TEST_F(TheManager, IsNotifiedByAProcessWithoutStandardInput) {
  listen();
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);  // the next socket takes its number, 0
  EXPECT_EQ(vl_settingNotify(datagram.data()), 0);
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_EQ(received(), datagram);
}

TEST_F(TheManager, NeedNotBeThere) {
  EXPECT_EQ(vl_settingNotify(datagram.data()), 0);
  EXPECT_EQ(vl_settingNotify(datagram.data()), 0);
}

}  // namespace
