// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "web/share_access.h"

#include "core/config.h"
#include "core/profile_mapping.h"
#include "core/text.h"

namespace usbdev {
namespace {

// Intended: The share id is read shorter here.
constexpr auto kViewerSsid = keys::ssid.cutTo<16>();

/// Why a channel's device cannot be seen.
ViewCode viewCode(const Section &channel) {
  if (channel.get(keys::exists) == 0) return ViewCode::unplugged;
  if (channel.get(keys::conflictch) != kNone) return ViewCode::conflict;
  if (channel.get(keys::slot_switch) == 0) return ViewCode::switched_off;
  if (channel.get(keys::vnode) != kNone) return ViewCode::serve;
  return channel.get(keys::anode) == kNone ? ViewCode::no_video : ViewCode::audio_only;
}

/// Why a viewer with that token cannot see it.
ViewCode shareCode(const Section &channel, const char *token) {
  const ViewCode code = viewCode(channel);
  if (code != ViewCode::serve) return code;
  if (channel.get(keys::shrenable) == 0) return ViewCode::not_shared;
  char stored[64];
  channel.get(keys::token, stored);
  // Intended: The password of a link is not checked.
  return isSame(stored, token) ? ViewCode::serve : ViewCode::wrong_token;
}

bool holdsShareId(const Section &channel, const TextPath &key, const char *ssid) {
  char stored[keys::ssid.size];
  channel.getText(key, stored);
  // Intended: An empty share id is found.
  return isSame(stored, ssid);
}

}  // namespace

int profileOfShareId(const char *ssid) {
  const ConfigReader config;
  if (!config) return kNone;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    if (holdsShareId(channel, keys::ssid, ssid)) return channel.get(keys::profile);
  }
  return kNone;
}

bool checkLiveView(int profile, ViewCode &code) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  const ConfigReader config;
  code = config ? viewCode(config.channel(channel)) : ViewCode::no_video;
  return true;
}

ViewCode checkViewer(const char *ssid, const char *token, int &profile) {
  const ConfigReader config;
  if (!config) return ViewCode::no_video;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    // Intended: The profile of the last channel stays.
    profile = channel.get(keys::profile);
    if (profile != kNone && holdsShareId(channel, kViewerSsid, ssid)) return shareCode(channel, token);
  }
  return ViewCode::unknown_link;
}

}  // namespace usbdev
