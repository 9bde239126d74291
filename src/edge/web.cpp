// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/web.h>

#include <cstring>

#include "core/text.h"
#include "web/authorization.h"
#include "web/base64.h"
#include "web/http_client.h"
#include "web/http_helpers.h"
#include "web/link_ids.h"
#include "web/login.h"
#include "web/share_access.h"
#include "web/share_links.h"
#include "web/sockets.h"
#include "web/streaming_status.h"
#include "web/url_encoding.h"

namespace {

int countOrCode(usbdev::SocketResult result, int count) {
  return result == usbdev::SocketResult::done ? count : static_cast<int>(result);
}

int outcome(usbdev::ViewCode found, int *code) {
  *code = static_cast<int>(found);
  return found == usbdev::ViewCode::serve ? 0 : -1;
}

}  // namespace

char NVR_CGI[sizeof(usbdev::RequestPath)];

int connect_host(const NasServer *server, char *out, int bufsize, unsigned chunk, int use_auth) {
  if (server == nullptr || out == nullptr) return -1;
  const usbdev::Credentials credentials = use_auth != 0 ? usbdev::Credentials::sent : usbdev::Credentials::left_out;
  int count = 0;
  return usbdev::askServer(*server, NVR_CGI, credentials, chunk, {out, bufsize}, count) ? count : -1;
}

void error(const char *text) { usbdev::endProcess(text); }

int socket_read(int sock, char *buf, int len) {
  if (buf == nullptr || len < 0) return -1;
  int count = 0;
  const usbdev::SocketResult result = usbdev::receiveText(sock, {buf, static_cast<std::size_t>(len) + 1}, count);
  return countOrCode(result, count);
}

int socket_write(int sock, const char *text) {
  if (text == nullptr) return -1;
  int count = 0;
  const usbdev::SocketResult result = usbdev::sendText(sock, text, count);
  return countOrCode(result, count);
}

int http_open(int *sock, const char *host) {
  return sock != nullptr && host != nullptr && usbdev::openHttp(host, *sock) ? 0 : -1;
}

int http_read_line(int sock, char *buf, int max) {
  if (buf == nullptr) return -1;
  int length = 0;
  return usbdev::readHttpLine(sock, {buf, static_cast<std::size_t>(max > 0 ? max : 0)}, length) ? length : -1;
}

int http_skip_nvr_http_header(int sock) { return static_cast<int>(usbdev::skipHttpHead(sock)); }

int http_send_cmd(int sock, const char *host, const char *path, const char *user, const char *password) {
  if (host == nullptr || path == nullptr || user == nullptr || password == nullptr) return -1;
  return usbdev::sendHttpRequest(sock, host, path, user, password) ? 0 : -1;
}

int http_close(int sock) {
  usbdev::closeHttp(sock);
  return 0;
}

int getNVR_AUTH(const char *user, const char *password, char *out) {
  if (user == nullptr || password == nullptr || out == nullptr) return 0;
  usbdev::Authorization text;
  if (usbdev::formatAuthorization(text, user, password)) usbdev::copyCut(out, text, sizeof text - 1);
  return 0;
}

int get_next_line(const char *text, char *out) {
  std::size_t length = 0;
  if (text == nullptr || out == nullptr || !usbdev::findFirstLine(text, length)) return -1;
  std::memcpy(out, text, length);
  return static_cast<int>(length);
}

int Base64enc(const unsigned char *in, int len, char *out) {
  return out == nullptr || (in == nullptr && len > 0) ? 0 : usbdev::encodeBase64(in, len, out);
}

char *Base64encs(const char *in, char *out) {
  if (in != nullptr && out != nullptr) usbdev::encodeBase64(in, out);
  return out;
}

int Base64dec(const char *in, unsigned char *out) {
  return in == nullptr || out == nullptr ? 0 : usbdev::decodeBase64(in, out);
}

char *Base64decs(const char *in, char *out) {
  if (in != nullptr && out != nullptr) usbdev::decodeBase64(in, reinterpret_cast<unsigned char *>(out));
  return out;
}

int url_encode(char *out, const char *in, int len) {
  if (out != nullptr && in != nullptr) usbdev::encodeUrl(in, len, out);
  return 0;
}

int nas_auth(const NasServer *server, char *sid) {
  usbdev::SessionId made;
  if (server == nullptr || sid == nullptr || !usbdev::login(NVR_CGI, *server, made)) return -1;
  usbdev::copyCut(sid, made, sizeof made - 1);
  return 0;
}

int nas_logout(const NasServer *server, const char *sid) {
  int reply_size = 0;
  if (server == nullptr || sid == nullptr || !usbdev::logout(NVR_CGI, *server, sid, reply_size)) return -1;
  return reply_size;
}

int nas_sid_auth(const NasServer *server, const char *sid) {
  return server != nullptr && sid != nullptr && usbdev::isSessionValid(NVR_CGI, *server, sid) ? 0 : -1;
}

int write_sid(const char *reply, char *sid) {
  usbdev::SessionId found;
  if (reply == nullptr || sid == nullptr || !usbdev::findSession(reply, found)) return -1;
  usbdev::copyCut(sid, found, sizeof found - 1);
  return 0;
}

int vl_auth(const char *user, const char *password) {
  return user != nullptr && password != nullptr && usbdev::hostAcceptsUser(NVR_CGI, user, password) ? 0 : -1;
}

int vl_sid_auth(const char *sid) {
  if (sid == nullptr) return -10;
  return usbdev::hostKnowsSession(NVR_CGI, sid) ? 0 : -1;
}

int generate_ssid(char *out) {
  if (out != nullptr) usbdev::makeShareId({out, usbdev::kShareIdSize});
  return 0;
}

int generate_hash(char *out) {
  if (out != nullptr) usbdev::makeHash({out, usbdev::kHashSize});
  return 0;
}

int strip(char *in, char *out) {
  return in == nullptr || out == nullptr ? 0 : static_cast<int>(usbdev::strip(in, out));
}

int vl_set_share_link(ShareLinkInfo *info) { return info != nullptr && usbdev::setShareLink(*info) ? 0 : -1; }

int vl_get_share_link(ShareLinkInfo *info) { return info != nullptr && usbdev::readShareLink(*info) ? 0 : -1; }

int vl_renew_share_link(ShareLinkInfo *info) { return info != nullptr && usbdev::renewShareLink(*info) ? 0 : -1; }

int remove_hash_link(const char *section) { return section != nullptr && usbdev::removeStoredLink(section) ? 0 : -1; }

int vl_check_share_link_ssid(const char *ssid) { return ssid == nullptr ? -1 : usbdev::profileOfShareId(ssid); }

int vl_validate_chliveview(int profile, int *code) {
  usbdev::ViewCode found = usbdev::ViewCode::serve;
  return code != nullptr && usbdev::checkLiveView(profile, found) ? outcome(found, code) : -1;
}

int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code) {
  if (ssid == nullptr || token == nullptr || profile == nullptr || code == nullptr) return -1;
  return outcome(usbdev::checkViewer(ssid, token, *profile), code);
}

int vl_get_hls_status(int profile, int *status) {
  if (status != nullptr) *status = usbdev::hasPlaylist(profile) ? 1 : 0;
  return 0;
}

int vl_StreamNotify(const void *message) {
  if (message == nullptr) return -1;
  return usbdev::sendStreamSignal(*static_cast<const usbdev::StreamSignal *>(message)) ? 0 : -1;
}

int vl_SourcerStreamingProcess(int number, int kind) {
  const usbdev::StreamSource source = kind == 0 ? usbdev::StreamSource::encoder : usbdev::StreamSource::camera;
  return usbdev::isSourceRunning(number, source) ? 1 : 0;
}

int mn_update_pfstate(int profile, int value) { return usbdev::storeProfileState(profile, value) ? 0 : -1; }

int vl_get_pidvid(int profile, char *pidvid) {
  if (pidvid == nullptr) return -1;
  char found[usbdev::kShortCodeSize];
  const usbdev::ProductSearch result = usbdev::findProductOfProfile(profile, found);
  if (result == usbdev::ProductSearch::found) usbdev::copyCut(pidvid, found, sizeof found - 1);
  return static_cast<int>(result);
}
