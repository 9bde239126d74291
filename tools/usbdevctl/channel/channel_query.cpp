// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "channel/channel_query.h"

#include <usbdev/devices.h>
#include <usbdev/profiles.h>

#include <algorithm>

namespace usbdevctl {

namespace {

bool readSlots(ChannelListings &listings) {
  for (std::size_t channel = 0; channel < listings.slots.size(); ++channel) {
    const _usbdev_entry &device = listings.devices[channel];
    if (device.exists == 0) continue;
    if (vl_get_usbslot_info(device.usbslot, &listings.slots[channel]) != 0) return false;
  }
  return true;
}

bool readListings(ChannelListings &listings) {
  if (vl_get_devpf_list(listings.devices.data()) != 0 || vl_get_available_dev(listings.available.data()) != 0 ||
      vl_get_profile_list(listings.profiles.data()) != 0) {
    return false;
  }
  for (int channel = 0; channel < USBDEV_CHANNELS; ++channel) {
    listings.profile_ids[static_cast<std::size_t>(channel)] = vl_get_profileID(channel);
  }
  return readSlots(listings);
}

/// Checks that each profile which has a channel was found in one: a profile that could not be read looks like none.
bool isComplete(const ChannelListings &listings) {
  const auto &found = listings.profile_ids;
  return std::all_of(listings.profiles.begin(), listings.profiles.end(), [&found](const _usbdev_entry &entry) {
    return entry.profile == -1 || std::find(found.begin(), found.end(), entry.profile) != found.end();
  });
}

}  // namespace

bool readChannels(ChannelRows &rows) {
  ChannelListings listings;
  if (!readListings(listings)) return false;
  // Another process may have taken a profile away in between.
  if (!isComplete(listings) && (!readListings(listings) || !isComplete(listings))) return false;
  rows = describeChannels(listings);
  return true;
}

}  // namespace usbdevctl
