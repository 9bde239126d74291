// One HTTP/1.0 request, its answer read raw.
#include <unistd.h>
#include <usbdev/web.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/text.h"
#include "web/authorization.h"
#include "web/stream_socket.h"

char NVR_CGI[256];

namespace usbdev {
namespace {

constexpr std::size_t kScratchSize = 2048;

/// Each line goes out on its own.
void sendLine(const StreamSocket &server, const char *line) {
  if (server.sendBytes(line, std::strlen(line)) < 0) error("ERROR writing to socket");
}

/// Forgets the path of a request that is not sent.
int refuse() {
  std::memset(NVR_CGI, 0, sizeof NVR_CGI);
  return -1;
}

void sendRequest(const StreamSocket &connection, const NasServer &server, const char *authorization) {
  char line[512];
  formatText(line, "GET %s HTTP/1.0\r\n", NVR_CGI);
  sendLine(connection, line);
  if (authorization[0] != '\0') {
    formatText(line, "Authorization: %s\r\n", authorization);
    sendLine(connection, line);
  }
  formatText(line, "Host: %s:%d\r\n", server.host, server.port);
  sendLine(connection, line);
  sendLine(connection, "\r\n");
}

int readReply(const StreamSocket &connection, char *out, int bufsize, std::size_t chunk) {
  char scratch[kScratchSize];
  int total = 0;
  for (;;) {
    const ssize_t got = read(connection.descriptor(), scratch, chunk);
    if (got < 0) error("ERROR reading from socket");
    if (total >= bufsize) {
      std::fprintf(stderr, "buffer overflow, count=%d, bufsize=%d\n", total, bufsize);
      return total;
    }
    if (got == 0) return total;
    const int room = bufsize - total;
    const int kept = got < room ? static_cast<int>(got) : room;
    std::memcpy(out + total, scratch, static_cast<std::size_t>(kept));
    total += kept;
  }
}

}  // namespace
}  // namespace usbdev

int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth) {
  if (server == nullptr || out == nullptr || !usbdev::isTerminated(server->host)) return -1;
  if (!usbdev::isTerminated(NVR_CGI)) return usbdev::refuse();
  usbdev::Authorization authorization = "";
  if (use_auth != 0 && !usbdev::formatAuthorization(authorization, *server)) return usbdev::refuse();
  sockaddr_in address;
  if (!usbdev::resolveHost(server->host, server->port, address)) return -1;
  const usbdev::StreamSocket connection(address, {stdout, "Failed to socket\n", "Failed to connetc\n"});
  if (!connection) return -1;
  usbdev::sendRequest(connection, *server, authorization);
  return usbdev::readReply(connection, out, bufsize, chunk < usbdev::kScratchSize ? chunk : usbdev::kScratchSize);
}

void error(const char *text) {
  std::perror(text);
  std::exit(0);  // the callers' agreement: a broken connection ends the process without a failure status
}
