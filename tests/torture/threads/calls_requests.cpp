// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstring>
#include <string>

#include "calls.h"

namespace torture {

namespace {

NasServer server() {
  NasServer record{};
  strcpy(record.host, "nas.local");
  record.port = 8080;
  strcpy(record.user, "admin");
  strcpy(record.password, "secret");
  return record;
}

/// A socket for the library, and what its peer sends and gets.
class Connection {
 public:
  explicit Connection(const std::string &sent) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends_) != 0) return;
    if (write(ends_[1], sent.data(), sent.size()) < 0) return;
    shutdown(ends_[1], SHUT_WR);
  }
  ~Connection() {
    for (const int end : ends_) close(end);
  }
  Connection(const Connection &) = delete;
  Connection &operator=(const Connection &) = delete;

  int own() const { return ends_[0]; }
  std::string received() const {
    char bytes[1024];
    const ssize_t count = read(ends_[1], bytes, sizeof bytes);
    return {bytes, count > 0 ? static_cast<size_t>(count) : 0};
  }

 private:
  int ends_[2] = {-1, -1};
};

Calls http() {
  return {
      {"socket_read",
       [] {
         const Connection connection("hello");
         char buffer[16] = "";
         return seen(socket_read(connection.own(), buffer, 5), buffer);
       }},
      {"socket_write",
       [] {
         const Connection connection("");
         const int result = socket_write(connection.own(), "hello");
         return seen(result) + connection.received();
       }},
      {"http_open",
       [] {
         int sock = -1;
         const int result = http_open(&sock, "nas.local");
         http_close(sock);
         return seen(result);
       }},
      {"http_read_line",
       [] {
         const Connection connection("first\nsecond\n");
         char line[16] = "";
         return seen(http_read_line(connection.own(), line, sizeof line), line);
       }},
      {"http_skip_nvr_http_header",
       [] {
         const Connection connection("HTTP/1.0 200 OK\r\nServer: nas\r\n\r\nbody");
         return seen(http_skip_nvr_http_header(connection.own()));
       }},
      {"http_send_cmd",
       [] {
         const Connection connection("");
         const int result = http_send_cmd(connection.own(), "nas.local", "/", "admin", "secret");
         return seen(result) + connection.received();
       }},
      {"http_close", [] { return seen(http_close(-1)); }},
  };
}

Calls logins() {
  return {
      {"connect_host",
       [] {
         strcpy(NVR_CGI, "/index.html");
         const NasServer record = server();
         char out[256] = "";
         return seen(connect_host(&record, out, sizeof out, 64, 1), out);
       },
       Turn::login},
      {"nas_auth",
       [] {
         const NasServer record = server();
         char sid[128] = "";
         return seen(nas_auth(&record, sid), sid);
       },
       Turn::login},
      {"nas_logout",
       [] {
         const NasServer record = server();
         return seen(nas_logout(&record, "a1b2"));
       },
       Turn::login},
      {"nas_sid_auth",
       [] {
         const NasServer record = server();
         return seen(nas_sid_auth(&record, "a1b2"));
       },
       Turn::login},
      {"vl_auth", [] { return seen(vl_auth("admin", "secret")); }, Turn::login},
      {"vl_sid_auth", [] { return seen(vl_sid_auth("a1b2")); }, Turn::login},
  };
}

}  // namespace

Calls requestCalls() {
  Calls all = http();
  for (const Call &call : logins()) all.push_back(call);
  return all;
}

}  // namespace torture
