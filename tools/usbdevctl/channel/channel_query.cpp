#include "channel/channel_query.h"

#include <usbdev/devices.h>
#include <usbdev/profiles.h>

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

}  // namespace

bool readChannels(ChannelRows &rows) {
  ChannelListings listings;
  if (!readListings(listings)) return false;
  rows = describeChannels(listings);
  return true;
}

}  // namespace usbdevctl
