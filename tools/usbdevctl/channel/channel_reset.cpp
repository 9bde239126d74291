// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/channel_reset.h"

#include "core/channel_keys.h"

namespace usbdevctl {

namespace {

ResetKey asMissing(const usbdev::IntKey &key) { return {key.key, key.sub_key, nullptr, key.usual_default}; }
ResetKey asMissing(const usbdev::TextPath &key) { return {key.key, key.sub_key, key.usual_default, 0}; }

}  // namespace

const std::vector<ResetKey> &resetKeys() {
  static const std::vector<ResetKey> keys = {
#define CHANNEL_KEY(type, name, ...) asMissing(usbdev::keys::name),
#include "core/channel_keys.def"
#undef CHANNEL_KEY
  };
  return keys;
}

}  // namespace usbdevctl
