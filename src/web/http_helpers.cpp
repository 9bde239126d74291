// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/http_helpers.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "web/authorization.h"
#include "web/sockets.h"
#include "web/stream_socket.h"

namespace usbdev {
namespace {

constexpr int kHttpPort = 80;
constexpr int kStatusLineLimit = 256;
constexpr int kHeadLimit = 512;
// Intended: Only line feeds in a row end the head.
constexpr int kHeadEnd = 3;  // line feeds in a row, without carriage returns between them

/// False when the socket fails.
bool readByte(int sock, char &byte) {
  char received[2] = "";
  int count = 0;
  if (receiveText(sock, received, count) != SocketResult::done) return false;
  // Intended: A closed connection gives zero bytes.
  byte = received[0];
  return true;
}

struct RequestLine {
  const char *pattern;
  const char *value;
};

constexpr std::size_t kRequestLineSize = 2048;

/// Sends a line, the rest of it again if the connection takes only a part.
bool sendLine(int sock, const char *line) {
  const char *const end = line + std::strlen(line);
  for (int count = 0; line != end; line += count) {
    if (sendText(sock, line, count) != SocketResult::done || count == 0) return false;
  }
  return true;
}

template <std::size_t N>
bool sendRequest(int sock, const RequestLine (&lines)[N]) {
  // All lines are checked before the first one is sent.
  for (const bool sending : {false, true}) {
    for (const RequestLine &line : lines) {
      char text[kRequestLineSize];
      if (!formatText(text, line.pattern, line.value)) return false;
      if (!sending || sendLine(sock, text)) continue;
      std::fputs("ERROR writing to socket", stdout);
      return false;
    }
  }
  return true;
}

}  // namespace

bool openHttp(const char *host, int &sock) {
  sockaddr_in address;
  if (!resolveHost(host, kHttpPort, address)) return false;
  StreamSocket connection(address, {stderr, "http_open:Failed to socket\n", "http_open:Failed to connect\n"});
  if (!connection) return false;
  sock = connection.release();
  return true;
}

void closeHttp(int sock) {
  if (sock >= 0) close(sock);
}

bool readHttpLine(int sock, TextBuffer line, int &length) {
  std::size_t count = 0;
  for (; count < line.size; ++count) {
    char &byte = line.start[count];
    if (!readByte(sock, byte)) return false;
    if (byte != '\n') continue;
    byte = '\0';
    break;
  }
  length = static_cast<int>(count);
  return true;
}

HttpHead skipHttpHead(int sock) {
  char status[kStatusLineLimit + 1] = "";
  int length = 0;
  if (!readHttpLine(sock, {status, kStatusLineLimit}, length)) return HttpHead::unreadable;
  if (!contains(status, "200 OK")) {
    std::fprintf(stderr, "skip nvr http header:[%s]\n", status);
    return HttpHead::wrong_status;
  }
  int line_feeds = 0;
  // If the limit is inside a run of line feeds, reads to the end of the run.
  for (int consumed = 0; consumed < kHeadLimit || line_feeds > 0; ++consumed) {
    char byte = '\0';
    if (!readByte(sock, byte)) return HttpHead::unreadable;
    line_feeds = byte == '\n' ? line_feeds + 1 : 0;
    if (line_feeds == kHeadEnd) return HttpHead::passed;
  }
  return HttpHead::too_long;
}

bool sendHttpRequest(int sock, const char *host, const char *path, const char *user, const char *password) {
  Authorization authorization;
  if (!formatAuthorization(authorization, user, password)) return false;
  return sendRequest(sock, {{"GET %s HTTP/1.0\r\n", path},
                            {"Authorization: %s\r\n", authorization},
                            {"Host: %s\r\n", host},
                            {"%s", "\r\n"}});
}

bool findFirstLine(const char *text, std::size_t &length) {
  const char *const end = std::strchr(text, '\n');
  if (end == nullptr) return false;
  length = static_cast<std::size_t>(end - text);
  return true;
}

}  // namespace usbdev
