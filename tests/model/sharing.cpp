// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "text.h"
#include "world.h"

namespace model {

namespace {

// Why a channel's stream may not be watched.
constexpr int kValid = -1;
constexpr int kWrongToken = 9000;
constexpr int kUnplugged = 9001;
constexpr int kNoNode = 9003;
constexpr int kAudioOnly = 9004;
constexpr int kParked = 9007;
constexpr int kSwitchedOff = 9009;
constexpr int kNotShared = 9010;
constexpr int kUnknownId = 9011;

int stateOf(const Channel &channel) {
  if (!channel.exists()) return kUnplugged;
  if (channel.isParked()) return kParked;
  if (channel.number("slot_switch", -1) == 0) return kSwitchedOff;
  if (channel.hasVideo()) return kValid;
  return channel.hasAudio() ? kAudioOnly : kNoNode;
}

int answer(int state, int *code) {
  *code = state;
  return state == kValid ? 0 : -1;
}

}  // namespace

int World::vl_set_share_link(ShareLinkInfo *info) {
  const int n = channelOf(info->profile);
  if (n == -1) return -1;
  Channel &channel = channels[n];
  const bool same_password = channel.text("sharelink/shrpwd") == info->shrpwd;
  copy(info->ssid, channel.text("sharelink/ssid"));
  const bool has_id = info->ssid[0] != '\0';
  channel.set("sharelink/shrenable", info->shrenable);
  channel.set("sharelink/pwdenable", info->pwdenable);
  channel.set("sharelink/shrpwd", info->shrpwd);
  if (info->shrenable != 0 && has_id && same_password) return 0;
  removeLink(channel.text("sharelink/hash_string"));
  if (info->shrenable == 0) {
    for (const char *key : {"sharelink/ssid", "sharelink/token", "sharelink/hash_string"}) channel.set(key, "");
    return 0;
  }
  if (!has_id) {
    copy(info->ssid, next_ssid);
    channel.set("sharelink/ssid", next_ssid);
  }
  copy(info->token, newHash());
  copy(info->hash_string, newHash());
  channel.set("sharelink/token", info->token);
  channel.set("sharelink/hash_string", info->hash_string);
  addLink(info->profile, info->hash_string);
  return 0;
}

int World::vl_get_share_link(ShareLinkInfo *info) const {
  const int n = channelOf(info->profile);
  if (n == -1) return -1;
  const Channel &channel = channels[n];
  copy(info->profilename, channel.text("profilename"));
  info->shrenable = channel.number("sharelink/shrenable", 0);
  copy(info->ssid, channel.text("sharelink/ssid"));
  info->pwdenable = channel.number("sharelink/pwdenable", 0);
  copy(info->shrpwd, channel.text("sharelink/shrpwd"));
  copy(info->token, channel.text("sharelink/token"));
  copy(info->hash_string, channel.text("sharelink/hash_string"));
  return 0;
}

// One that is not enabled is renewed too.
int World::vl_renew_share_link(ShareLinkInfo *info) {
  const int n = channelOf(info->profile);
  if (n == -1) return -1;
  Channel &channel = channels[n];
  removeLink(channel.text("sharelink/hash_string"));
  copy(info->ssid, next_ssid);
  copy(info->token, newHash());
  copy(info->hash_string, newHash());
  channel.set("sharelink/ssid", info->ssid);
  channel.set("sharelink/token", info->token);
  channel.set("sharelink/hash_string", info->hash_string);
  addLink(info->profile, info->hash_string);
  return 0;
}

int World::remove_hash_link(const char *section) {
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    if ("ch" + std::to_string(n) == section) removeLink(channels[n].text("sharelink/hash_string"));
  }
  return 0;
}

int World::vl_check_share_link_ssid(const char *ssid) const {
  for (const Channel &channel : channels) {
    if (channel.text("sharelink/ssid") == ssid) return channel.profile();
  }
  return -1;
}

int World::vl_validate_chliveview(int profile, int *code) const {
  const int n = channelOf(profile);
  return n == -1 ? -1 : answer(stateOf(channels[n]), code);
}

// A share id is read to its 15th character here.
int World::vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code) const {
  for (const Channel &channel : channels) {
    *profile = channel.profile();
    if (!channel.hasProfile() || channel.text("sharelink/ssid").substr(0, 15) != ssid) continue;
    const int state = stateOf(channel);
    if (state != kValid) return answer(state, code);
    if (channel.number("sharelink/shrenable", 0) == 0) return answer(kNotShared, code);
    return answer(channel.text("sharelink/token") == token ? kValid : kWrongToken, code);
  }
  return answer(kUnknownId, code);
}

int World::mn_update_pfstate(int profile, int value) {
  available["pf" + std::to_string(profile) + "/available"] = value;
  return 0;
}

int World::vl_get_pidvid(int profile, char *pidvid) const {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  const std::string ids = host.idsOf(channels[n].vnode(), channels[n].slot());
  if (ids.empty()) return -3;
  snprintf(pidvid, 16, "%s", ids.c_str());
  return 0;
}

}  // namespace model
