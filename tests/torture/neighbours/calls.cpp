// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "calls.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <usbdev/usbdev.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

namespace neighbours {
namespace {

// --- of servers; the argument is the port ---

NasServer loginService(const char *port) {
  NasServer server{};
  std::strcpy(server.host, "127.0.0.1");
  server.port = std::atoi(port);
  std::strcpy(server.user, "u");
  std::strcpy(server.password, "p");
  return server;
}

Answer logIn(const char *port) {
  const NasServer server = loginService(port);
  char sid[128] = "";
  const int result = nas_auth(&server, sid);
  return {result, sid};
}

Answer checkSession(const char *port) {
  const NasServer server = loginService(port);
  return {nas_sid_auth(&server, "s1d")};
}

Answer logOut(const char *port) {
  const NasServer server = loginService(port);
  return {nas_logout(&server, "s1d")};
}

Answer acceptUser(const char *user) { return {vl_auth(user, "secret")}; }
Answer acceptSession(const char *sid) { return {vl_sid_auth(sid)}; }

int connected(const char *port) {
  const int sock = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<in_port_t>(std::atoi(port)));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(sock, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) std::_Exit(3);
  return sock;
}

Answer readHead(const char *port) {
  const int sock = connected(port);
  if (http_send_cmd(sock, "camera", "/state", "u", "p") != 0) return {-9};
  return {http_skip_nvr_http_header(sock)};
}

Answer readLine(const char *port) {
  char line[64] = "";
  const int length = http_read_line(connected(port), line, sizeof line - 1);
  return {length, length < 0 ? "" : std::string(line, static_cast<std::size_t>(length))};
}

Answer readOnce(const char *port) {
  char bytes[64] = "";
  const int result = socket_read(connected(port), bytes, sizeof bytes - 1);
  return {result, bytes};
}

Answer openHttp(const char *host) {
  int sock = -1;
  return {http_open(&sock, host)};
}

// Writes until the library reports something else than success: the other side reads nothing, or has gone.
Answer writeOn(const char *port) {
  const int sock = connected(port);
  char text[2048];
  std::memset(text, 'x', sizeof text - 1);
  text[sizeof text - 1] = '\0';
  int result = 0;
  do {
    result = socket_write(sock, text);
  } while (result > 0);
  return {result};
}

Answer signalStreaming(const char *) { return {vl_StreamNotify("a signal has thirty-two bytes...")}; }

Answer notifyManager(const char *times) {
  int result = 0;
  for (int i = 0; i < std::atoi(times) && result == 0; ++i) {
    result = vl_settingNotify("ORDA_VLM2_CFCG_N, and forty bytes that are not looked at here");
  }
  return {result};
}

// --- of tools; the argument is said where one matters ---

std::string described(const _usbfmt_des *table, int formats) {
  std::string text;
  for (int i = 0; i < formats; ++i) {
    int rates = 0;
    for (int k = 0; k < table[i].res_count; ++k) rates += table[i].res[k].fps_count;
    char part[128];
    std::snprintf(part, sizeof part, "%s%dx%d+%d+%d", i == 0 ? "" : " ", table[i].res[0].width, table[i].res[0].height,
                  table[i].res_count, rates);
    text += part;
  }
  return text;
}

Answer listFormats(const char *) {
  static _usbfmt_des table[USBDEV_FORMATS];
  int over60 = 0;
  const int formats = mn_get_usbchn_fmts(0, table, &over60);
  return {formats, described(table, formats) + (over60 != 0 ? " over 60" : "")};
}

_usbdev_des camera() {
  _usbdev_des device{};
  device.devtype = 1;
  device.plugged = 1;
  std::strcpy(device.usbslot, "3-1");
  std::strcpy(device.devname, "Camera");
  return device;
}

Answer findIds(const char *) {
  const _usbdev_des device = camera();
  char ids[16] = "";
  const int result = find_pidvid(&device, ids);
  return {result, ids};
}

Answer findBridge(const char *) { return {isPCIbridge(0)}; }
Answer needsHardKill(const char *) { return {vl_force_kill_v4l2_ctl(0)}; }

Answer findBridgePath(const char *) {
  char path[256] = "";
  const int result = get_pcibridgePath(0, path);
  return {result, path};
}

Answer findPackage(const char *) {
  char path[128] = "";
  const int result = get_bndl_install_path("Velmora2", path);
  return {result, path};
}

Answer findPlaylist(const char *) {
  int status = -1;
  vl_get_hls_status(0, &status);
  return {status};
}

Answer hasGpu(const char *) {
  int result = -1;
  check_gpu_status(&result);
  return {result};
}

Answer findPanelNumber(const char *) { return {vl_HOS_CLI_usbid("3-1")}; }
Answer findSource(const char *) { return {vl_SourcerStreamingProcess(1, 0)}; }
Answer isLimited(const char *) { return {AMDmodel_oneChannelLimited()}; }

Answer makeHash(const char *) {
  char hash[33] = "untouched";
  const int result = generate_hash(hash);
  return {result, hash};
}

Answer readCamera(const char *) {
  int node = -1;
  char name[256] = "";
  const int result = get_video_info("3-1:1.0", &node, name);
  return {result, node == -1 ? "" : std::to_string(node) + " " + name};
}

Answer startUp(const char *) { return {vl_set_devpf_list()}; }

Answer plugIn(const char *) {
  _usbdev_des device = camera();
  _usbdev_conflict conflict{};
  int profile = 0;
  int node = 0;
  char name[256] = "";
  return {mn_set_usbdev_hotplug(&device, &profile, name, &node, &conflict)};
}

Answer listCameras(const char *) {
  static char text[65536];
  return {vl_get_usbdev_list(text)};
}

Answer share(const char *) {
  ShareLinkInfo info{};
  info.shrenable = 1;
  return {vl_set_share_link(&info), info.hash_string};
}

// --- of configuration files ---

Answer readChannel(const char *) {
  int channel = -1;
  const int result = trsProfiletoPlugCh(0, &channel);
  char name[256] = "";
  if (result == 0) vl_getDevName(0, name);
  return {result == 0 ? channel : result, name};
}

Answer writeName(const char *name) { return {vl_set_profile_channelname(0, name, 3)}; }

const std::map<std::string, Call> kCalls{
    {"log in", logIn},
    {"check a session", checkSession},
    {"log out", logOut},
    {"accept a user", acceptUser},
    {"accept a session", acceptSession},
    {"read a head", readHead},
    {"read a line", readLine},
    {"read once", readOnce},
    {"open a connection", openHttp},
    {"write on", writeOn},
    {"signal", signalStreaming},
    {"notify", notifyManager},
    {"list formats", listFormats},
    {"find ids", findIds},
    {"find a bridge", findBridge},
    {"find a bridge's path", findBridgePath},
    {"judge a hanging query", needsHardKill},
    {"find a package", findPackage},
    {"find a playlist", findPlaylist},
    {"has a GPU", hasGpu},
    {"find a panel number", findPanelNumber},
    {"find a source", findSource},
    {"is limited", isLimited},
    {"make a hash", makeHash},
    {"read a camera", readCamera},
    {"start up", startUp},
    {"plug in", plugIn},
    {"list cameras", listCameras},
    {"share", share},
    {"read a channel", readChannel},
    {"write a name", writeName},
};

}  // namespace

Call callNamed(const char *name) {
  const auto found = kCalls.find(name);
  return found == kCalls.end() ? nullptr : found->second;
}

std::string printable(const std::string &text) {
  std::string result;
  for (const char c : text) {
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(c));
    const bool is_plain = c >= ' ' && c <= '~' && c != '\\';
    result += is_plain ? std::string(1, c) : escaped;
  }
  return result;
}

}  // namespace neighbours
