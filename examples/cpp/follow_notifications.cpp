// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Prints the change notifications of the library, as the manager receives them: follow_notifications [COUNT]
// With COUNT, it ends after so many. Only one program on a host can listen.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <optional>
#include <span>
#include <usbdev/usbdev.hpp>

#include "number.hpp"

namespace {

using usbdev::Notification;

class Manager {
 public:
  Manager() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(Notification::kPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    is_listening_ = socket_ >= 0 && bind(socket_, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  }
  ~Manager() {
    if (socket_ >= 0) close(socket_);
  }
  Manager(const Manager &) = delete;
  Manager &operator=(const Manager &) = delete;

  bool isListening() const { return is_listening_; }

  /// Waits for a notification, and drops whatever else arrives; returns nothing if nothing can be received.
  std::optional<Notification> receive() const {
    std::array<std::byte, Notification::kSize + 1> datagram = {};  // the byte too many shows a longer one
    while (true) {
      const ssize_t size = recv(socket_, datagram.data(), datagram.size(), 0);
      if (size < 0) return std::nullopt;
      if (auto it = Notification::decode(std::span(datagram).first(static_cast<std::size_t>(size)))) return it;
    }
  }

 private:
  int socket_;
  bool is_listening_ = false;
};

int fail() {
  std::perror("follow_notifications");
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  const std::optional<int> count = argc > 1 ? numberIn(argv[1]) : -1;
  if (argc > 2 || !count) {
    std::cerr << "usage: follow_notifications [COUNT]\n";
    return 2;
  }
  const Manager manager;
  if (!manager.isListening()) return fail();
  std::cout << "listening" << std::endl;
  for (int left = *count; left != 0; left -= left > 0 ? 1 : 0) {
    const auto it = manager.receive();
    if (!it) return fail();
    std::cout << "event " << it->event << "  profile " << it->profile << "  video " << it->video_node << "  audio "
              << it->audio_node << std::endl;
  }
  return 0;
}
