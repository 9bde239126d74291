// Reading from and writing to a socket that may be slow.
#include <sys/select.h>
#include <sys/socket.h>
#include <usbdev/web.h>

#include <cstdio>
#include <cstring>

namespace usbdev {
namespace {

constexpr time_t kPatience = 120;  // seconds

constexpr int kSelectFailed = -1;
constexpr int kTimedOut = -2;
constexpr int kTransferFailed = -3;
constexpr int kNotFlagged = -4;

struct Messages {
  const char *select_failed;
  const char *timed_out;
  const char *not_flagged;
  const char *transfer_failed;
};

constexpr Messages kReading{"sock_read: select:error\n", "socket_read: timeout\n",
                            "sock_read: error: case not handled.", "sock_read:error recv()ing reply\n"};
constexpr Messages kWriting{"socket write: select: error\n", "socket write: timeout\n",
                            "socket write: error: case not handled.", "socket write: error send()ing request:\n"};

int fail(int code, const char *message) {
  std::fputs(message, stderr);
  return code;
}

/// 0 when the socket is ready, else the failure, which has been told.
int waitUntilReady(int sock, const Messages &direction) {
  if (sock < 0 || sock >= FD_SETSIZE) return fail(kSelectFailed, direction.select_failed);
  fd_set watched;
  FD_ZERO(&watched);
  FD_SET(sock, &watched);
  timeval patience{kPatience, 0};
  const bool reading = &direction == &kReading;
  const int ready = select(sock + 1, reading ? &watched : nullptr, reading ? nullptr : &watched, nullptr, &patience);
  if (ready < 0) return fail(kSelectFailed, direction.select_failed);
  if (ready == 0) return fail(kTimedOut, direction.timed_out);
  return FD_ISSET(sock, &watched) ? 0 : fail(kNotFlagged, direction.not_flagged);
}

}  // namespace
}  // namespace usbdev

int socket_read(int sock, char *buf, int len) {
  if (buf == nullptr || len < 0) return -1;
  const int waited = usbdev::waitUntilReady(sock, usbdev::kReading);
  if (waited != 0) return waited;
  const ssize_t got = recv(sock, buf, static_cast<std::size_t>(len), 0);
  if (got < 0) return usbdev::fail(usbdev::kTransferFailed, usbdev::kReading.transfer_failed);
  buf[got] = '\0';
  return static_cast<int>(got);
}

int socket_write(int sock, const char *text) {
  if (text == nullptr) return -1;
  const int waited = usbdev::waitUntilReady(sock, usbdev::kWriting);
  if (waited != 0) return waited;
  const ssize_t sent = send(sock, text, std::strlen(text), MSG_NOSIGNAL);
  if (sent < 0) return usbdev::fail(usbdev::kTransferFailed, usbdev::kWriting.transfer_failed);
  return static_cast<int>(sent);
}
