// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <arpa/inet.h>

#include <cstring>

#include "text.h"
#include "world.h"

namespace model {

namespace {

bool isProfile(int profile) { return profile >= 0 && profile <= 3; }

// The client's address is all that identifies the request of a clearing.
std::string headerOf(const char *client_ip) {
  std::string header(16, '\0');
  if (client_ip == nullptr) return header;
  const in_addr_t address = inet_addr(client_ip);
  memcpy(&header[4], &address, sizeof address);
  return header;
}

}  // namespace

int World::vl_chk_usbdev_profile(const char *usbslot, int profile, int *unassigned) const {
  if (!isProfile(profile)) return -1;
  for (const Channel &channel : channels) {
    if (!channel.exists() || channel.slot() != usbslot) continue;
    if (!channel.hasProfile()) *unassigned = 1;
    return !channel.hasProfile() || channel.profile() == profile ? 0 : -1;
  }
  return 0;
}

int World::vl_set_usbchn_profile(char *usbslot, int profile) {
  if (!isProfile(profile)) return -1;
  for (const Channel &channel : channels) {
    if (channel.exists() && channel.profile() == profile) return channel.slot() == usbslot ? 0 : -1;
  }
  int target = 0;
  while (target < USBDEV_CHANNELS && !(channels[target].exists() && channels[target].slot() == usbslot)) ++target;
  if (target == USBDEV_CHANNELS || channels[target].hasProfile()) return -1;
  Channel &channel = channels[target];
  const std::string bridge = host.bridgeOf(channel.vnode());
  channel.set("profile", profile);
  channel.set("createtime", now);
  channel.set("vtag", next_ssid);
  channel.set("hlspath", newHash());
  addLink(profile, channel.text("hlspath"));
  for (int n = 0; n < USBDEV_CHANNELS; ++n) {
    const Channel &other = channels[n];
    if (n == target || !other.exists() || !other.hasVideo()) continue;
    if (conflicts(other.slot(), usbslot, bridge, other.vnode())) channels[n].set("conflictch", target);
  }
  log(0, format("Modified Channel %d USB device name: %s (%s)", profile + 1, channel.name().c_str(), usbslot));
  return 0;
}

int World::vl_clear_usbchn_profile(int profile, const char *client_ip, int event_code) {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  Channel &channel = channels[n];
  const Channel before = channel;
  removeLink(before.text("sharelink/hash_string"));
  removeLink(before.text("hlspath"));
  channel.set("profile", -1);
  for (const char *key : {"createtime", "profilename", "hlspath", "vtag"}) channel.set(key, "");
  for (const char *key : {"video/spsstate", "sharelink/shrenable", "sharelink/pwdenable"}) channel.set(key, 0);
  for (const char *key : {"sharelink/shrpwd", "sharelink/ssid", "sharelink/token", "sharelink/hash_string"}) {
    channel.set(key, "");
  }
  int next = 99;
  updateConflict(n, -1, event_code, &next);
  notify(event_code, profile, before.vnode(), before.anode(), 0, next == 99 ? -1 : next, headerOf(client_ip));
  return 0;
}

int World::vl_set_profile_channelname(int profile, const char *name, int event_code) {
  const int n = channelOf(profile);
  if (n == -1) return -1;
  const std::string wanted = std::string(name).substr(0, 255);
  if (channels[n].text("profilename") == wanted && event_code != 5) return 0;
  if (channels[n].text("profilename") != wanted) channels[n].set("profilename", wanted);
  log(0, format("Modified Channel %d channel name: %s", profile + 1, wanted.c_str()));
  return 0;
}

// A port is switched together with its channel, and those that share it have to wait or may stream.
int World::vl_set_usbslot_switch(const char *usbslot, const char *state, const char *) {
  const bool on = std::string(state) == "enable";
  _streaminfo info;
  vl_get_usbslot_info(usbslot, &info);
  const int own = info.channel;
  if (own == -1) return -1;
  const bool was_parked = channels[own].isParked();
  const std::string bridge = host.bridgeOf(info.vnode);
  int holder = -1;
  int last_codec = 1;
  std::vector<int> waiting;
  for (int n = 0; n < USBDEV_CHANNELS && holder == -1; ++n) {
    const Channel &other = channels[n];
    if (n == own) continue;
    last_codec = other.number("video/vcodec", 1);  // read before it is known whether it matters
    if (!other.exists() || !other.hasVideo() || other.isParked()) continue;
    if (!conflicts(other.slot(), usbslot, bridge, other.vnode())) continue;
    if (other.hasProfile() && other.number("slot_switch", 1) == 1) {
      holder = n;
    } else if (on && info.vprofile != -1) {
      waiting.push_back(n);
    }
  }
  channels[own].set("slot_switch", on ? 1 : 0);
  for (const int n : waiting) channels[n].set("conflictch", own);
  channels[own].set("conflictch", holder);
  int next = 99;
  if (!on && !was_parked) updateConflict(own, -1, 0, &next);
  if (on && holder != -1 && host.one_channel) updateConflict(own, holder, 1, &next);
  log(0, format("USB slot [%s] has been %s.", usbslot, on ? "enabled" : "disabled"));
  if (info.stream_type < 2) return 0;
  if (!on && info.vprofile != -1) notify(7, info.vprofile, -1, -1, 0, next == 99 ? -1 : next);
  if (on && holder == -1 && last_codec == 1) notify(6, info.vprofile, 0, 1, 0, next == 99 ? info.vprofile : next);
  return 0;
}

}  // namespace model
