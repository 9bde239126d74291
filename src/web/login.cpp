// Logins and sessions at the host's own web server.
#include <unistd.h>
#include <usbdev/web.h>

#include <cstdio>
#include <cstring>

#include "core/lines.h"
#include "core/text.h"
#include "web/authorization.h"

namespace usbdev {
namespace {

constexpr int kUsualPort = 58080;
constexpr int kReplySize = 4096;
constexpr std::size_t kSidSize = 128;
constexpr std::size_t kPathSize = sizeof NVR_CGI;

constexpr char kSidStart[] = "<authSid><![CDATA[";
constexpr char kSidEnd[] = "]]></authSid>";
constexpr char kPassedStart[] = "<authPassed><![CDATA[";

/// A reply, searched as text.
struct Reply {
  char text[kReplySize + 1] = {};
};

/// Makes the request path from one value or two; false, the path cleared, when it does not fit.
bool setRequestPath(const char *pattern, const char *first, const char *second) {
  std::memset(NVR_CGI, 0, sizeof NVR_CGI);
  char path[kPathSize];
  if (!formatText(path, pattern, first, second)) return false;
  char encoded[3 * kPathSize] = {};
  url_encode(encoded, path, static_cast<int>(std::strlen(path)));
  const std::size_t length = std::strlen(encoded);
  if (length >= sizeof NVR_CGI) return false;
  std::memcpy(NVR_CGI, encoded, length + 1);
  return true;
}

constexpr int kAuthorized = 1;
constexpr int kAnonymous = 0;

/// Asks for a path made from one value or two; the count of the reply's bytes, or -1.
int ask(const NasServer &server, int use_auth, Reply &reply, const char *pattern, const char *first,
        const char *second = "") {
  if (!setRequestPath(pattern, first, second)) return -1;
  return connect_host(&server, reply.text, kReplySize, 1, use_auth);
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
  return user != nullptr && password != nullptr && std::strlen(user) <= kCredentialLength &&
         std::strlen(password) <= kCredentialLength && !hasControlCharacter(user);
}

}  // namespace
}  // namespace usbdev

int write_sid(const char *reply, char *sid) {
  if (reply == nullptr || sid == nullptr) return -1;
  const char *start = std::strstr(reply, usbdev::kSidStart);
  if (start == nullptr) return -1;
  start += sizeof usbdev::kSidStart - 1;
  const char *const end = std::strstr(start, usbdev::kSidEnd);
  if (end == nullptr) return -1;
  const auto length = static_cast<std::size_t>(end - start);
  if (length >= usbdev::kSidSize) return -1;
  usbdev::copyCut(sid, start, length);
  return 0;
}

int nas_auth(const NasServer *server, char *sid) {
  if (server == nullptr || sid == nullptr) return -1;
  // Fields that are not terminated are too long; the request path is cleared for them too.
  usbdev::Authorization unused;
  if (!usbdev::formatAuthorization(unused, *server)) {
    std::memset(NVR_CGI, 0, sizeof NVR_CGI);
    return -1;
  }
  char password[usbdev::kCredentialLength * 2];
  Base64encs(server->password, password);
  usbdev::Reply reply;
  const int count =
      usbdev::ask(*server, usbdev::kAuthorized, reply, "/cgi-bin/authLogin.cgi?user=%s&pwd=%s", server->user, password);
  return count < 0 ? -1 : write_sid(reply.text, sid);
}

int nas_logout(const NasServer *server, const char *sid) {
  if (server == nullptr || sid == nullptr) return -1;
  usbdev::Reply reply;
  return usbdev::ask(*server, usbdev::kAuthorized, reply, "/cgi-bin/authLogout.cgi?logout=1&sid=%s", sid);
}

int nas_sid_auth(const NasServer *server, const char *sid) {
  if (server == nullptr || sid == nullptr) return -1;
  usbdev::Reply reply;
  if (usbdev::ask(*server, usbdev::kAnonymous, reply, "/cgi-bin/authLogin.cgi?sid=%s", sid) < 0) return -1;
  const char *const marker = std::strstr(reply.text, usbdev::kPassedStart);
  if (marker == nullptr) return -1;
  const char passed = marker[sizeof usbdev::kPassedStart - 1];
  return passed == '0' || passed == '\0' ? -1 : 0;
}

int vl_auth(const char *user, const char *password) {
  if (!usbdev::areCredentials(user, password)) return -1;
  NasServer server = usbdev::hostServer();
  usbdev::copyText(server.user, user);
  usbdev::copyText(server.password, password);
  char sid[usbdev::kSidSize] = "";
  if (nas_auth(&server, sid) != 0) {
    std::fprintf(stderr, "[%s] authentication fail\n", user);
    return -1;
  }
  std::printf("[%s] authentication OK, get sid:[%s]...\n", user, sid);
  sleep(1);  // the login service needs its moment before it can end the session again
  nas_logout(&server, sid);
  return 0;
}

int vl_sid_auth(const char *sid) {
  if (sid == nullptr) return -10;
  if (usbdev::hasControlCharacter(sid)) return -1;
  const NasServer server = usbdev::hostServer();
  return nas_sid_auth(&server, sid);
}
