#include "core/change_notification.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/core.h>

#include <cstdio>
#include <cstring>

namespace usbdev {

ChangeNotification::ChangeNotification(int profile_id, int event_code) : profile(profile_id), event(event_code) {
  std::memcpy(magic, "ORDA_VLM2_CFCG_N", sizeof magic);
}

ChangeNotification ChangeNotification::ofCamera(int profile_id, bool starts) {
  ChangeNotification notification(profile_id, starts ? kEventPlugged : kEventRemoved);
  if (starts) {
    notification.vnode = 0;  // nodes 0 and 1 are fixed marks of the event, not node numbers
    notification.anode = 1;
    notification.target = profile_id;
  }
  return notification;
}

}  // namespace usbdev

int vl_settingNotify(const void *datagram) {
  if (datagram == nullptr) return -1;
  const int sock = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (sock < 0) {
    std::fputs("create config change notify socket fail.\n", stderr);
    return -1;
  }
  sockaddr_in manager{};
  manager.sin_family = AF_INET;
  manager.sin_port = htons(10171);
  manager.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  constexpr std::size_t size = sizeof(usbdev::ChangeNotification);
  const ssize_t sent = sendto(sock, datagram, size, 0, reinterpret_cast<const sockaddr *>(&manager), sizeof manager);
  close(sock);
  if (sent == static_cast<ssize_t>(size)) return 0;
  std::fputs("socket send to manager error\n", stderr);
  return -1;
}
