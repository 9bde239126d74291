// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Share links, what names them, who may use them; and the state of streams.
#include <usbdev/usbdev.h>

#include "scenario.h"

namespace calls {
namespace {

// A profile with a share link.
contract::HostChannel shared(Host &host) {
  makeIdentifiers(host);
  linkOnDisk(host, "old");
  return cameraOn(host, 0, "3-1", 1, 0)
      .set("sharelink/shrenable", 1)
      .set("sharelink/ssid", "00001234")
      .set("sharelink/token", "token")
      .set("sharelink/shrpwd", "secret")
      .set("sharelink/hash_string", "old");
}

void aSharedProfile(World &w) { shared(w.host); }

ShareLinkInfo link(int enabled, const char *password) {
  ShareLinkInfo info = contract::zeroed<ShareLinkInfo>();
  info.shrenable = enabled;
  strcpy(info.shrpwd, password);
  return info;
}

Scenarios identifiers() {
  return {
      {"generate_ssid", "", emptyHost, [](World &, Outputs &out) { return generate_ssid(out.text()); }},
      {"generate_hash", "", [](World &w) { makeIdentifiers(w.host); },
       [](World &, Outputs &out) { return generate_hash(out.text()); }},
      {"strip", "", emptyHost, [](World &, Outputs &out) { return strip(out.text("ab-cd\n"), out.text()); }},
  };
}

Scenarios shareLinks() {
  return {
      {"vl_set_share_link", "a first link",
       [](World &w) { shared(w.host).set("sharelink/ssid", "").set("sharelink/hash_string", ""); },
       [](World &, Outputs &out) { return vl_set_share_link(&out.record(link(1, ""))); }},
      {"vl_set_share_link", "the same password", aSharedProfile,
       [](World &, Outputs &out) { return vl_set_share_link(&out.record(link(1, "secret"))); }},
      {"vl_set_share_link", "another password", aSharedProfile,
       [](World &, Outputs &out) { return vl_set_share_link(&out.record(link(1, "other"))); }},
      {"vl_set_share_link", "no longer shared", aSharedProfile,
       [](World &, Outputs &out) { return vl_set_share_link(&out.record(link(0, "secret"))); }},
      {"vl_get_share_link", "", aSharedProfile,
       [](World &, Outputs &out) { return vl_get_share_link(&out.record(link(0, ""))); }},
      {"vl_renew_share_link", "", aSharedProfile,
       [](World &, Outputs &out) { return vl_renew_share_link(&out.record(link(0, ""))); }},
      {"remove_hash_link", "", aSharedProfile, [](World &, Outputs &) { return remove_hash_link("ch0"); }},
  };
}

Scenarios viewers() {
  return {
      {"vl_check_share_link_ssid", "", aSharedProfile,
       [](World &, Outputs &) { return vl_check_share_link_ssid("00001234"); }},
      {"vl_validate_chliveview", "", aSharedProfile,
       [](World &, Outputs &out) { return vl_validate_chliveview(0, &out.record<int>()); }},
      {"vl_ssid_auth", "", aSharedProfile,
       [](World &, Outputs &out) {
         int &profile = out.record<int>();
         return vl_ssid_auth("00001234", "token", &profile, &out.record<int>());
       }},
  };
}

Scenarios streams() {
  return {
      {"vl_get_hls_status", "",
       [](World &w) {
         w.host.package("Velmora2", "Install_Path", "/share/v");
         w.host.files.write("/share/v/web/hls/channel1/playlist.m3u8", "#EXTM3U\n");
       },
       [](World &, Outputs &out) { return vl_get_hls_status(0, &out.record<int>()); }},
      {"vl_SourcerStreamingProcess", "",
       [](World &w) {
         w.host.commands.prints("/bin/ps | /bin/grep \"HDpipe 2\" | /bin/grep -v grep | /bin/awk '{print $1}'",
                                "4711\n");
       },
       [](World &, Outputs &) { return vl_SourcerStreamingProcess(2, 0); }, 0},
      {"mn_update_pfstate", "", emptyHost, [](World &, Outputs &) { return mn_update_pfstate(2, 1); }},
      {"vl_get_pidvid", "", aSharedProfile, [](World &, Outputs &out) { return vl_get_pidvid(0, out.text()); }},
  };
}

}  // namespace

Scenarios shareScenarios() { return identifiers() + shareLinks() + viewers() + streams(); }

}  // namespace calls
