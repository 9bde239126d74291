// A request and its answer, step by step, for programs that talk to a camera's or a recorder's web service.
#include <unistd.h>
#include <usbdev/web.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "core/text.h"
#include "web/authorization.h"
#include "web/stream_socket.h"

namespace usbdev {
namespace {

constexpr int kHttpPort = 80;
constexpr int kStatusLineLimit = 256;
constexpr int kHeaderLimit = 512;
constexpr int kHeaderEnd = 3;  // line feeds in a row, without carriage returns between them

/// False when the socket fails. A peer that has closed gives zero bytes without end.
bool readByte(int sock, char &byte) {
  char received[2];
  if (socket_read(sock, received, 1) < 0) return false;
  byte = received[0];
  return true;
}

struct RequestLine {
  const char *pattern;
  const char *value;
};

constexpr std::size_t kRequestLineSize = 2048;

template <std::size_t N>
int sendRequest(int sock, const RequestLine (&lines)[N]) {
  // All lines are looked at before the first one is sent.
  for (const bool sending : {false, true}) {
    for (const RequestLine &line : lines) {
      char text[kRequestLineSize];
      if (!formatText(text, line.pattern, line.value)) return -1;
      if (!sending || socket_write(sock, text) >= 0) continue;
      std::fputs("ERROR writing to socket", stdout);
      return -1;
    }
  }
  return 0;
}

}  // namespace
}  // namespace usbdev

int http_open(int *sock, const char *host) {
  if (sock == nullptr || host == nullptr) return -1;
  sockaddr_in address;
  if (!usbdev::resolveHost(host, usbdev::kHttpPort, address)) return -1;
  usbdev::StreamSocket connection(address, {stderr, "http_open:Failed to socket\n", "http_open:Failed to connect\n"});
  if (!connection) return -1;
  *sock = connection.release();
  return 0;
}

int http_read_line(int sock, char *buf, int max) {
  if (buf == nullptr) return -1;
  for (int count = 0; count < max; ++count) {
    if (!usbdev::readByte(sock, buf[count])) return -1;
    if (buf[count] != '\n') continue;
    buf[count] = '\0';
    return count;
  }
  return max > 0 ? max : 0;
}

int http_skip_nvr_http_header(int sock) {
  char status[usbdev::kStatusLineLimit + 1] = "";
  if (http_read_line(sock, status, usbdev::kStatusLineLimit) < 0) return -1;
  if (!usbdev::contains(status, "200 OK")) {
    std::fprintf(stderr, "skip nvr http header:[%s]\n", status);
    return -2;
  }
  int line_feeds = 0;
  // A run of line feeds that has begun is followed beyond the limit.
  for (int consumed = 0; consumed < usbdev::kHeaderLimit || line_feeds > 0; ++consumed) {
    char byte = '\0';
    if (!usbdev::readByte(sock, byte)) return -1;
    line_feeds = byte == '\n' ? line_feeds + 1 : 0;
    if (line_feeds == usbdev::kHeaderEnd) return 1;
  }
  return 0;
}

int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password) {
  if (host == nullptr || path == nullptr || user == nullptr || password == nullptr) return -1;
  usbdev::Authorization authorization;
  if (!usbdev::formatAuthorization(authorization, user, password)) return -1;
  return usbdev::sendRequest(sock, {{"GET %s HTTP/1.0\r\n", path},
                                    {"Authorization: %s\r\n", authorization},
                                    {"Host: %s\r\n", host},
                                    {"%s", "\r\n"}});
}

int http_close(int sock) {
  if (sock >= 0) close(sock);
  return 0;
}

int get_next_line(const char *text, char *out) {
  if (text == nullptr || out == nullptr) return -1;
  const char *const end = std::strchr(text, '\n');
  if (end == nullptr) return -1;
  const auto length = static_cast<std::size_t>(end - text);
  std::memcpy(out, text, length);
  return static_cast<int>(length);
}
