// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/usbdev.h>

#include <cstring>

#include "calls.h"
#include "settled_host.h"

namespace torture {

namespace {

ShareLinkInfo linkOf(int profile) {
  ShareLinkInfo info{};
  info.profile = profile;
  info.shrenable = info.pwdenable = 1;
  strcpy(info.shrpwd, kPassword);
  return info;
}

}  // namespace

Calls shareCalls() {
  return {
      {"generate_ssid",
       [] {
         char id[9] = "";
         return seen(generate_ssid(id), id);
       }},
      {"generate_hash",
       [] {
         char hash[33] = "";
         return seen(generate_hash(hash), hash);
       }},
      {"vl_set_share_link",
       [] {
         ShareLinkInfo info = linkOf(0);
         return seen(vl_set_share_link(&info), info);
       }},
      {"vl_get_share_link",
       [] {
         ShareLinkInfo info = linkOf(0);
         return seen(vl_get_share_link(&info), info);
       }},
      {"vl_renew_share_link",
       [] {
         ShareLinkInfo info = linkOf(1);
         return seen(vl_renew_share_link(&info), info);
       }},
      {"remove_hash_link", [] { return seen(remove_hash_link("ch0")); }},
      {"vl_check_share_link_ssid", [] { return seen(vl_check_share_link_ssid(kShareId)); }},
      {"vl_validate_chliveview",
       [] {
         int code = 0;
         return seen(vl_validate_chliveview(0, &code), code);
       }},
      {"vl_ssid_auth",
       [] {
         int profile = -1;
         int code = 0;
         return seen(vl_ssid_auth(kShareId, kToken, &profile, &code), profile, code);
       }},
      {"mn_update_pfstate", [] { return seen(mn_update_pfstate(0, 1)); }},
  };
}

const Calls &allCalls() {
  static const Calls all = [] {
    Calls gathered;
    for (const Calls &part : {textCalls(), hostCalls(), deviceCalls(), conflictCalls(), profileCalls(), hotplugCalls(),
                              requestCalls(), shareCalls()}) {
      gathered.insert(gathered.end(), part.begin(), part.end());
    }
    return gathered;
  }();
  return all;
}

}  // namespace torture
