// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "core/change_notification.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace usbdev {

ChangeNotification::ChangeNotification(int profile_id, EventCode event_code) : profile(profile_id), event(event_code) {
  std::memcpy(magic, "ORDA_VLM2_CFCG_N", sizeof magic);
}

ChangeNotification ChangeNotification::ofCamera(int profile_id, bool starts) {
  ChangeNotification notification(profile_id, starts ? EventCode::plugged : EventCode::removed);
  if (starts) {
    // Intended: The nodes are marks.
    notification.vnode = 0;
    notification.anode = 1;
    notification.target = profile_id;
  }
  return notification;
}

bool sendNotification(const ChangeNotification &notification) {
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (sock < 0) {
    std::fputs("create config change notify socket fail.\n", stderr);
    return false;
  }
  sockaddr_in manager{};
  manager.sin_family = AF_INET;
  manager.sin_port = htons(10171);
  manager.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const ssize_t sent =
      sendto(sock, &notification, sizeof notification, 0, reinterpret_cast<const sockaddr *>(&manager), sizeof manager);
  close(sock);
  if (sent == static_cast<ssize_t>(sizeof notification)) return true;
  std::fputs("socket send to manager error\n", stderr);
  return false;
}

}  // namespace usbdev
