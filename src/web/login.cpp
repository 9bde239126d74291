// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/login.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "core/lines.h"
#include "core/text.h"
#include "web/authorization.h"
#include "web/base64.h"
#include "web/url_encoding.h"

namespace usbdev {
namespace {

constexpr int kUsualPort = 58080;
constexpr int kAnswerSize = 4096;

constexpr char kSidStart[] = "<authSid><![CDATA[";
constexpr char kSidEnd[] = "]]></authSid>";
constexpr char kPassedStart[] = "<authPassed><![CDATA[";

/// A server's answer, searched as text.
struct Answer {
  char text[kAnswerSize + 1] = {};
  int size = 0;
};

/// Makes the request path from one value or two; false, the path cleared, when it does not fit.
bool setRequestPath(RequestPath &path, const char *pattern, const char *first, const char *second) {
  std::memset(path, 0, sizeof path);
  RequestPath plain;
  if (!formatText(plain, pattern, first, second)) return false;
  char encoded[3 * sizeof plain];
  const std::size_t length = encodeUrl(plain, static_cast<int>(std::strlen(plain)), encoded);
  if (length >= sizeof path) return false;
  std::memcpy(path, encoded, length);
  return true;
}

/// Sends the request of a path made from one value or two; false without an answer.
bool ask(RequestPath &path, const NasServer &server, Credentials credentials, Answer &answer, const char *pattern,
         const char *first, const char *second = "") {
  return setRequestPath(path, pattern, first, second) &&
         askServer(server, path, credentials, 1, {answer.text, kAnswerSize}, answer.size);
}

int hostPort() { return CommandLines("/sbin/readcfg System InnerWebAccessPort -d 58080").nextNumber(kUsualPort); }

NasServer hostServer() {
  NasServer server{};
  copyText(server.host, "127.0.0.1");
  server.port = hostPort();
  return server;
}

bool hasControlCharacter(const char *text) {
  for (const char *c = text; *c != '\0'; ++c) {
    if (static_cast<unsigned char>(*c) < 0x20 || *c == 0x7F) return true;
  }
  return false;
}

bool areCredentials(const char *user, const char *password) {
  return std::strlen(user) <= kCredentialLength && std::strlen(password) <= kCredentialLength &&
         !hasControlCharacter(user);
}

}  // namespace

bool findSession(const char *reply, SessionId &sid) {
  const char *start = std::strstr(reply, kSidStart);
  if (start == nullptr) return false;
  start += sizeof kSidStart - 1;
  const char *const end = std::strstr(start, kSidEnd);
  if (end == nullptr) return false;
  const auto length = static_cast<std::size_t>(end - start);
  if (length >= sizeof sid) return false;
  copyCut(sid, start, length);
  return true;
}

bool login(RequestPath &path, const NasServer &server, SessionId &sid) {
  // Fields that are not terminated are too long; the request path is cleared for them too.
  Authorization unused;
  if (!formatAuthorization(unused, server)) {
    std::memset(path, 0, sizeof path);
    return false;
  }
  char password[base64Size(sizeof server.password - 1)];
  encodeBase64(server.password, password);
  Answer answer;
  return ask(path, server, Credentials::sent, answer, "/cgi-bin/authLogin.cgi?user=%s&pwd=%s", server.user, password) &&
         findSession(answer.text, sid);
}

bool logout(RequestPath &path, const NasServer &server, const char *sid, int &reply_size) {
  Answer answer;
  if (!ask(path, server, Credentials::sent, answer, "/cgi-bin/authLogout.cgi?logout=1&sid=%s", sid)) return false;
  reply_size = answer.size;
  return true;
}

bool isSessionValid(RequestPath &path, const NasServer &server, const char *sid) {
  Answer answer;
  if (!ask(path, server, Credentials::left_out, answer, "/cgi-bin/authLogin.cgi?sid=%s", sid)) return false;
  const char *const marker = std::strstr(answer.text, kPassedStart);
  if (marker == nullptr) return false;
  const char passed = marker[sizeof kPassedStart - 1];
  return passed != '0' && passed != '\0';
}

bool hostAcceptsUser(RequestPath &path, const char *user, const char *password) {
  if (!areCredentials(user, password)) return false;
  NasServer server = hostServer();
  copyText(server.user, user);
  copyText(server.password, password);
  SessionId sid = "";
  if (!login(path, server, sid)) {
    std::fprintf(stderr, "[%s] authentication fail\n", user);
    return false;
  }
  std::printf("[%s] authentication OK, get sid:[%s]...\n", user, sid);
  // Intended: A login takes a second longer than needed.
  sleep(1);  // the login service needs its moment before it can end the session again
  int unused = 0;
  logout(path, server, sid, unused);
  return true;
}

bool hostKnowsSession(RequestPath &path, const char *sid) {
  return !hasControlCharacter(sid) && isSessionValid(path, hostServer(), sid);
}

}  // namespace usbdev
