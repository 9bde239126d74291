// Who may see a live stream: the checks before a viewer is served.
#include <usbdev/web.h>

#include "core/config.h"
#include "core/profile_mapping.h"
#include "core/text.h"

namespace usbdev {
namespace {

// The codes that the viewers' pages know.
constexpr int kServe = -1;
constexpr int kWrongToken = 9000;
constexpr int kUnplugged = 9001;
constexpr int kNoVideo = 9003;
constexpr int kAudioOnly = 9004;
constexpr int kConflict = 9007;
constexpr int kSwitchedOff = 9009;
constexpr int kNotShared = 9010;
constexpr int kUnknownLink = 9011;

// Shorter than what the other readers take.
constexpr auto kViewerSsid = keys::ssid.cutTo<16>();

int outcome(int code) { return code == kServe ? 0 : -1; }

/// What keeps a channel's device from being seen.
int viewCode(const Section &channel) {
  if (channel.get(keys::exists) == 0) return kUnplugged;
  if (channel.get(keys::conflictch) != kNone) return kConflict;
  if (channel.get(keys::slot_switch) == 0) return kSwitchedOff;
  if (channel.get(keys::vnode) != kNone) return kServe;
  return channel.get(keys::anode) == kNone ? kNoVideo : kAudioOnly;
}

/// What keeps a viewer with that token from seeing it.
int shareCode(const Section &channel, const char *token) {
  const int code = viewCode(channel);
  if (code != kServe) return code;
  if (channel.get(keys::shrenable) == 0) return kNotShared;
  char stored[64];
  channel.get(keys::token, stored);
  return isSame(stored, token) ? kServe : kWrongToken;
}

bool holdsShareId(const Section &channel, const TextPath &key, const char *ssid) {
  char stored[keys::ssid.size];
  channel.getText(key, stored);
  return isSame(stored, ssid);
}

}  // namespace
}  // namespace usbdev

int vl_check_share_link_ssid(const char *ssid) {
  if (ssid == nullptr) return -1;
  const usbdev::ConfigReader config;
  if (!config) return -1;
  for (int i = 0; i < usbdev::kChannels; ++i) {
    const usbdev::Section &channel = config.channel(i);
    if (usbdev::holdsShareId(channel, usbdev::keys::ssid, ssid)) return channel.get(usbdev::keys::profile);
  }
  return -1;
}

int vl_validate_chliveview(int profile, int *code) {
  if (code == nullptr) return -1;
  const int channel = usbdev::channelOfProfile(profile);
  if (channel == usbdev::kNone) return -1;
  const usbdev::ConfigReader config;
  *code = config ? usbdev::viewCode(config.channel(channel)) : usbdev::kNoVideo;
  return usbdev::outcome(*code);
}

int vl_ssid_auth(const char *ssid, const char *token, int *profile, int *code) {
  if (ssid == nullptr || token == nullptr || profile == nullptr || code == nullptr) return -1;
  const usbdev::ConfigReader config;
  *code = config ? usbdev::kUnknownLink : usbdev::kNoVideo;
  for (int i = 0; config && i < usbdev::kChannels; ++i) {
    const usbdev::Section &channel = config.channel(i);
    *profile = channel.get(usbdev::keys::profile);
    if (*profile == usbdev::kNone) continue;
    if (!usbdev::holdsShareId(channel, usbdev::kViewerSsid, ssid)) continue;
    *code = usbdev::shareCode(channel, token);
    break;
  }
  return usbdev::outcome(*code);
}
