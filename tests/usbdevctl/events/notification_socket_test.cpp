// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/notification_socket.h"

#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using usbdevctl::NotificationSocket;

constexpr std::uint16_t kAnyPort = 0;

sockaddr_in addressOf(const NotificationSocket &socket) {
  sockaddr_in address = {};
  socklen_t size = sizeof address;
  getsockname(socket.descriptor(), reinterpret_cast<sockaddr *>(&address), &size);
  return address;
}

void sendTo(const NotificationSocket &receiver, const std::string &text) {
  const sockaddr_in address = addressOf(receiver);
  const NotificationSocket sender(kAnyPort);
  const ssize_t sent = sendto(sender.descriptor(), text.data(), text.size(), 0,
                              reinterpret_cast<const sockaddr *>(&address), sizeof address);
  ASSERT_EQ(sent, static_cast<ssize_t>(text.size()));
}

TEST(ANotificationSocket, ListensOnTheLoopbackAddressOnly) {
  const NotificationSocket socket(kAnyPort);
  EXPECT_EQ(socket.error(), "");
  EXPECT_EQ(addressOf(socket).sin_addr.s_addr, htonl(INADDR_LOOPBACK));
}

TEST(ANotificationSocket, ReceivesDatagramsWholeAndOneByOne) {
  const NotificationSocket socket(kAnyPort);
  sendTo(socket, std::string(1000, 'a'));
  sendTo(socket, "b");
  EXPECT_EQ(socket.receive(), std::string(1000, 'a'));
  EXPECT_EQ(socket.receive(), "b");
}

TEST(ANotificationSocket, ReceivesAnEmptyDatagram) {
  const NotificationSocket socket(kAnyPort);
  sendTo(socket, "");
  EXPECT_EQ(socket.receive(), "");
}

TEST(ATakenPort, IsAnErrorThatNamesWhoMayUseIt) {
  const NotificationSocket first(kAnyPort);
  const std::uint16_t port = ntohs(addressOf(first).sin_port);
  const NotificationSocket second(port);
  EXPECT_THAT(second.error(), StartsWith("cannot listen on 127.0.0.1:" + std::to_string(port) + ": "));
  EXPECT_THAT(second.error(), HasSubstr("is another manager or watch running?"));
}

}  // namespace
