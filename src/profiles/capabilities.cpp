// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profiles/capabilities.h"

#include "core/profile_mapping.h"
#include "devices/formats.h"

namespace usbdev {
namespace {

/// A profile's camera or sound card; false when it is not attached, switched off or has no node.
bool readCapability(int profile, const IntKey &node_key, const TextKey<16> &text_key, int &node, CapabilityText &text) {
  const int channel = channelOfProfile(profile);
  if (channel == kNone) return false;
  const ConfigReader config;
  if (!config) return false;
  const Section section = config.channel(channel);
  if (section.get(keys::exists) == 0 || section.get(keys::slot_switch, 1) == 0) return false;
  node = section.get(node_key);
  section.get(text_key, text);
  return node != kNone;
}

}  // namespace

int listProfileFormats(int profile, _usbfmt_des *table) {
  int vnode = kNone;
  CapabilityText unused;
  if (!readCapability(profile, keys::vnode, keys::cap, vnode, unused)) return -1;
  HostAnswers host;
  bool over60 = false;
  return listFormats(host, vnode, table, over60);
}

bool readVideoCapability(int profile, CapabilityText &text) {
  int vnode = kNone;
  return readCapability(profile, keys::vnode, keys::cap, vnode, text);
}

bool readAudioCapability(int profile, CapabilityText &text) {
  int anode = kNone;
  return readCapability(profile, keys::anode, keys::acap, anode, text);
}

}  // namespace usbdev
