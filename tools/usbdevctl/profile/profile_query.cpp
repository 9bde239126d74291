// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "profile/profile_query.h"

#include <usbdev/profiles.h>

#include "output/printable.h"

namespace usbdevctl {

bool readProfiles(Profiles &profiles) {
  std::array<_usbdev_entry, USBDEV_PROFILES> entries = {};
  if (vl_get_profile_list(entries.data()) != 0) return false;
  for (std::size_t i = 0; i < profiles.size(); ++i) {
    profiles[i] = {entries[i], followLink(kApplicationFolder, fieldText(entries[i].hlspath))};
  }
  return true;
}

}  // namespace usbdevctl
