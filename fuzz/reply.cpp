// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a web server answers: to a login, to the check of a session, and to a program that reads it line by line.
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "expect.h"
#include "input.h"

namespace {

using fuzz::expect;

constexpr std::size_t kLongest = 1024;  // most readers here take a byte at a time
constexpr std::size_t kSessionSize = 128;
constexpr char kBefore = '!';

/// What a server has sent before it closed the connection.
std::string sent;
int server_end = -1;

/// A socket with that at its other end; a small one, as the inputs are.
int openConnection() {
  int ends[2];
  expect(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0, "the fuzzer gets its sockets");
  expect(send(ends[1], sent.data(), sent.size(), 0) == static_cast<ssize_t>(sent.size()), "a reply fits its socket");
  shutdown(ends[1], SHUT_WR);
  server_end = ends[1];
  return ends[0];
}

std::string request() {
  char text[8192];
  const ssize_t got = recv(server_end, text, sizeof text, MSG_DONTWAIT);
  close(server_end);
  return {text, static_cast<std::size_t>(std::max<ssize_t>(got, 0))};
}

NasServer server() {
  NasServer server{};
  std::strcpy(server.host, "127.0.0.1");
  std::strcpy(server.user, "admin");
  std::strcpy(server.password, "secret");
  server.port = 58080;
  return server;
}

std::string textBetween(const std::string &text, const std::string &start, const std::string &end) {
  const std::size_t at = text.find(start);
  const std::size_t last = at == std::string::npos ? at : text.find(end, at + start.size());
  return last == std::string::npos ? std::string(kSessionSize, kBefore)
                                   : text.substr(at + start.size(), last - at - start.size());
}

/// The session in a reply to a login, which fails without one that fits.
void expectSession(int result, const char (&sid)[kSessionSize + 1], const std::string &reply) {
  const std::string session = textBetween(reply, "<authSid><![CDATA[", "]]></authSid>");
  expect(sid[kSessionSize] == kBefore, "a session takes at most 128 bytes");
  expect(result == (session.size() < kSessionSize ? 0 : -1), "a login needs a session");
  expect(result == 0 ? session == sid : sid[0] == kBefore, "a session is that of the reply");
}

void expectRequest(const char *path) {
  const std::string text = request();
  expect(text.rfind(std::string("GET ") + path, 0) == 0, "a request has its path");
  expect(text.size() > 4 && text.substr(text.size() - 4) == "\r\n\r\n", "a request ends with an empty line");
}

void logIn() {
  char sid[kSessionSize + 1];
  std::memset(sid, kBefore, sizeof sid);
  const NasServer host = server();
  expectSession(nas_auth(&host, sid), sid, sent.substr(0, 4096).c_str());
  expectRequest("/cgi-bin/authLogin.cgi?user=admin&pwd=");
  std::memset(sid, kBefore, sizeof sid);
  expectSession(write_sid(sent.c_str(), sid), sid, sent.c_str());
}

void checkSession() {
  const NasServer host = server();
  const std::string reply = sent.substr(0, 4096).c_str();
  const std::string start = "<authPassed><![CDATA[";
  const std::size_t at = reply.find(start);
  const bool passed = at != std::string::npos && at + start.size() < reply.size() && reply[at + start.size()] != '0';
  expect(nas_sid_auth(&host, "5abc") == (passed ? 0 : -1), "a session is valid when the server says so");
  expectRequest("/cgi-bin/authLogin.cgi?sid=5abc");
}

void logOut() {
  const NasServer host = server();
  expect(nas_logout(&host, "5abc") == static_cast<int>(std::min<std::size_t>(sent.size(), 4096)),
         "the size of a reply is returned");
  expectRequest("/cgi-bin/authLogout.cgi?logout=1&sid=5abc");
}

void fetch(int room, int chunk) {
  const NasServer host = server();
  std::strcpy(NVR_CGI, "/page");
  std::string out(static_cast<std::size_t>(room), kBefore);
  const int count = connect_host(&host, out.data(), room, static_cast<unsigned>(chunk + 1), 1);
  expect(count == static_cast<int>(std::min(sent.size(), out.size())), "a reply is cut to its buffer");
  expect(out.compare(0, static_cast<std::size_t>(count), sent, 0, static_cast<std::size_t>(count)) == 0,
         "a reply is read as it was sent");
  expectRequest("/page");
}

void readLines(int room) {
  const int sock = openConnection();
  std::string line(static_cast<std::size_t>(room) + 1, kBefore);
  std::size_t at = 0;
  for (int i = 0; i < 4; ++i) {
    const int length = http_read_line(sock, line.data(), room);
    expect(length >= 0 && length <= room && line.back() == kBefore, "a line stays within its buffer");
    const std::size_t end = std::min({sent.find('\n', at), at + static_cast<std::size_t>(room), sent.size()});
    expect(sent.compare(at, end - at, line, 0, end - at) == 0, "a line is read as it was sent");
    at = end < sent.size() && length < room ? end + 1 : end;
  }
  http_close(sock);
  request();
}

void skipHead() {
  const int sock = openConnection();
  const int result = http_skip_nvr_http_header(sock);
  const std::string status = sent.substr(0, std::min({sent.find('\n'), sent.size(), std::size_t{256}}));
  expect(result >= -2 && result <= 1, "a head has passed or not");
  if (std::string(status.c_str()).find("200 OK") == std::string::npos)
    expect(result == -2, "another status is refused");
  if (result == 1) expect(sent.find("\n\n\n") != std::string::npos, "a head ends with three line feeds");
  http_close(sock);
  request();
}

}  // namespace

// Every connection of the library finds the whole reply.
extern "C" int connect(int descriptor, const sockaddr *, socklen_t) {
  const int connection = openConnection();
  const int result = dup2(connection, descriptor);
  close(connection);
  return result < 0 ? -1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  fuzz::Input input(data, size);
  const int reader = input.number(6);
  const bool is_long = input.number(16) == 15;
  const int room = input.number(256);
  sent = input.text().substr(0, kLongest);
  if (is_long) sent.insert(0, 4096 - kLongest / 2, 'x');
  switch (reader) {
    case 0:
      logIn();
      break;
    case 1:
      checkSession();
      break;
    case 2:
      logOut();
      break;
    case 3:
      fetch(room, input.number(256));
      break;
    case 4:
      readLines(room);
      break;
    default:
      skipHead();
      break;
  }
  return 0;
}
