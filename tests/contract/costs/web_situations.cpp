// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "situations.h"

namespace contract {

namespace {

constexpr int kNoSocket = -1;

char text[256];
char name[64];
int number;

// No program listens there.
NasServer server() {
  NasServer record = zeroed<NasServer>();
  strcpy(record.host, "127.0.0.1");
  record.port = 8080;
  return record;
}

HostChannel shared(Host &host) {
  makeIdentifiers(host);
  linkOnDisk(host, "old");
  return cameraOn(host, 0, "3-1", 1, 0)
      .set("sharelink/shrenable", 1)
      .set("sharelink/ssid", "00004711")
      .set("sharelink/token", "token")
      .set("sharelink/shrpwd", "secret")
      .set("sharelink/hash_string", "old");
}

ShareLinkInfo link(int enabled, const char *password) {
  ShareLinkInfo info = zeroed<ShareLinkInfo>();
  info.shrenable = enabled;
  strcpy(info.shrpwd, password);
  return info;
}

void share(int enabled, const char *password) {
  ShareLinkInfo info = link(enabled, password);
  vl_set_share_link(&info);
}

Situations http() {
  return {
      {"connect_host",
       "",
       {},
       [](Host &) {
         const NasServer record = server();
         connect_host(&record, text, sizeof text, 1, 0);
       }},
      {"socket_read", "", {}, [](Host &) { socket_read(kNoSocket, text, 1); }},
      {"socket_write", "", {}, [](Host &) { socket_write(kNoSocket, "a"); }},
      {"http_open", "", {}, [](Host &) { http_open(&number, "127.0.0.1"); }},
      {"http_read_line", "", {}, [](Host &) { http_read_line(kNoSocket, text, 16); }},
      {"http_skip_nvr_http_header", "", {}, [](Host &) { http_skip_nvr_http_header(kNoSocket); }},
      {"http_send_cmd", "", {}, [](Host &) { http_send_cmd(kNoSocket, "127.0.0.1", "/", "admin", "secret"); }},
      {"http_close", "", {}, [](Host &) { http_close(kNoSocket); }},
      {"getNVR_AUTH", "", {}, [](Host &) { getNVR_AUTH("admin", "secret", text); }},
      {"get_next_line", "", {}, [](Host &) { get_next_line("a\n", text); }},
      {"Base64enc", "", {}, [](Host &) { Base64enc(reinterpret_cast<const unsigned char *>("a"), 1, text); }},
      {"Base64encs", "", {}, [](Host &) { Base64encs("a", text); }},
      {"Base64dec", "", {}, [](Host &) { Base64dec("YQ==", reinterpret_cast<unsigned char *>(text)); }},
      {"Base64decs", "", {}, [](Host &) { Base64decs("YQ==", text); }},
      {"url_encode", "", {}, [](Host &) { url_encode(text, "/a?b c", 6); }},
  };
}

Situations logins() {
  return {
      {"nas_auth",
       "",
       {},
       [](Host &) {
         const NasServer record = server();
         nas_auth(&record, text);
       }},
      {"nas_logout",
       "",
       {},
       [](Host &) {
         const NasServer record = server();
         nas_logout(&record, "a1b2");
       }},
      {"nas_sid_auth",
       "",
       {},
       [](Host &) {
         const NasServer record = server();
         nas_sid_auth(&record, "a1b2");
       }},
      {"write_sid", "", {}, [](Host &) { write_sid("<authSid><![CDATA[a1b2]]></authSid>", text); }},
      {"vl_auth", "", answers(), [](Host &) { vl_auth("admin", "secret"); }},
      {"vl_sid_auth", "", answers(), [](Host &) { vl_sid_auth("a1b2"); }},
  };
}

// The share id, the link's name and the password as they stand.
constexpr Costs kStored = lookUp(0) + reading(3);
// The token and the link's name, made by the same command.
constexpr Costs kTwoIdentifiers = answers(2) + repeats();

Situations shareLinks() {
  return {
      {"generate_ssid", "", {}, [](Host &) { generate_ssid(text); }},
      {"generate_hash", "", answers(), [](Host &) { generate_hash(text); }},
      {"strip", "", {}, [](Host &) { strcpy(text, "ab-cd"), strip(text, name); }},
      {"vl_set_share_link", "a first link", kStored + kTwoIdentifiers + writing(6) + programs(),
       [](Host &host) {
         shared(host).set("sharelink/ssid", "").set("sharelink/hash_string", "");
         share(1, "");
       }},
      {"vl_set_share_link", "the same password", kStored + writing(3),
       [](Host &host) { shared(host), share(1, "secret"); }},
      {"vl_set_share_link", "another password", kStored + kTwoIdentifiers + writing(5) + programs(2),
       [](Host &host) { shared(host), share(1, "other"); }},
      {"vl_set_share_link", "no longer shared", kStored + writing(6) + programs(),
       [](Host &host) { shared(host), share(0, "secret"); }},
      {"vl_get_share_link", "", lookUp(0) + reading(7),
       [](Host &host) {
         shared(host);
         ShareLinkInfo info = link(0, "");
         vl_get_share_link(&info);
       }},
      {"vl_renew_share_link", "", lookUp(0) + reading(1) + kTwoIdentifiers + writing(3) + programs(2),
       [](Host &host) {
         shared(host);
         ShareLinkInfo info = link(0, "");
         vl_renew_share_link(&info);
       }},
      {"remove_hash_link", "its symbolic link exists", reading(1) + programs(),
       [](Host &host) { shared(host), remove_hash_link("ch0"); }},
      {"remove_hash_link", "no share link", reading(1), [](Host &) { remove_hash_link("ch0"); }},
      // Up to the channel that holds it, then its profile.
      {"vl_check_share_link_ssid", "", reading(1 + 1),
       [](Host &host) { shared(host), vl_check_share_link_ssid("00004711"); }},
      {"vl_validate_chliveview", "", lookUp(0) + reading(4),
       [](Host &host) { shared(host), vl_validate_chliveview(0, &number); }},
      // Up to the channel that holds it two values each, then four as above, the switch and the token.
      {"vl_ssid_auth", "", reading(2 + 4 + 2),
       [](Host &host) {
         int profile = 0;
         shared(host);
         vl_ssid_auth("00004711", "token", &profile, &number);
       }},
  };
}

Situations streams() {
  return {
      {"vl_get_hls_status", "", answers(), [](Host &) { vl_get_hls_status(0, &number); }},
      {"vl_StreamNotify", "", {}, [](Host &) { vl_StreamNotify(text); }},
      {"vl_SourcerStreamingProcess", "", answers(), [](Host &) { vl_SourcerStreamingProcess(0, 0); }},
      {"mn_update_pfstate", "", writing(1), [](Host &) { mn_update_pfstate(0, 1); }},
      {"vl_get_pidvid", "", lookUp(0) + reading(2) + answers(),
       [](Host &host) {
         cameraOn(host, 0, "3-1", 1, 0);
         vl_get_pidvid(0, text);
       }},
  };
}

}  // namespace

Situations webSituations() {
  Situations all;
  for (const Situations &part : {http(), logins(), shareLinks(), streams()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

}  // namespace contract
