// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "hotplug/codec_check.h"

#include "core/config.h"
#include "core/text.h"

namespace usbdev {
namespace {

/// What a channel gets on a host that cannot encode.
enum class Remedy { none, unsupported, use_mjpeg };

Remedy judge(const Section &channel) {
  const bool in_use = channel.get(keys::exists) != 0 || channel.get(keys::profile) != kNone;
  if (channel.get(keys::vnode) == kNone || !in_use) return Remedy::none;
  char cap[16];
  channel.get(keys::cap, cap);
  if (!contains(cap, "1")) return Remedy::unsupported;
  return channel.get(keys::vcodec) == Codec::h264 ? Remedy::use_mjpeg : Remedy::none;
}

}  // namespace

bool checkCodecs(HostAnswers &host) {
  if (host.mayEncode()) return true;
  Remedy remedies[kChannels];
  bool any = false;
  {
    const ConfigReader config;
    if (!config) return false;
    for (int i = 0; i < kChannels; ++i) {
      remedies[i] = judge(config.channel(i));
      any = any || remedies[i] != Remedy::none;
    }
  }
  if (!any) return true;
  ConfigWriter config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    if (remedies[i] == Remedy::use_mjpeg) config.channel(i).set(keys::vcodec, Codec::mjpeg);
    if (remedies[i] == Remedy::unsupported) config.channel(i).set(keys::conflictch, kUnsupported);
  }
  return config.save();
}

}  // namespace usbdev
