// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "login_service.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace soak {

namespace {

constexpr in_port_t kPort = 58080;
constexpr char kReply[] =
    "HTTP/1.0 200 OK\r\n\r\n<authSid><![CDATA[s1d]]></authSid><authPassed><![CDATA[1]]></authPassed>";

void readHead(int connection) {
  std::string head;
  char part[1024];
  while (head.find("\r\n\r\n") == std::string::npos) {
    const ssize_t got = recv(connection, part, sizeof part, 0);
    if (got <= 0) return;
    head.append(part, static_cast<size_t>(got));
  }
}

}  // namespace

LoginService::LoginService() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const int yes = 1;
  setsockopt(listener_, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(kPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool listens =
      bind(listener_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0 && listen(listener_, 16) == 0;
  if (!listens) throw std::runtime_error("cannot listen");
  thread_ = std::thread([this] { serve(); });
}

LoginService::~LoginService() {
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  close(listener_);
}

void LoginService::serve() {
  for (;;) {
    const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection < 0) return;
    readHead(connection);
    ++requests_;
    send(connection, kReply, sizeof kReply - 1, MSG_NOSIGNAL);
    close(connection);
  }
}

}  // namespace soak
