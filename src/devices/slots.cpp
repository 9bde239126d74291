#include <usbdev/devices.h>

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/identification.h"

namespace usbdev {
namespace {

constexpr int kNotAvailable = -1;

void fillAvailable(const Section &channel, _availinfo &row) {
  readSettings(kAvailability, channel, row);
  row.stream_type = readStreamType(channel);
  if (row.stream_type == kAudioOnly) row.framerate = 0;
}

/// Lists the channels with a profile that are not parked; the others get the stream type of unavailable ones.
int listAvailable(_availinfo *rows, int profile, int unavailable) {
  if (rows == nullptr) return -1;
  const ConfigReader config;
  if (!config) return -1;
  std::memset(rows, 0, kChannels * sizeof *rows);
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    if (channel.get(keys::profile) == profile && channel.get(keys::conflictch) == kNone) {
      fillAvailable(channel, rows[i]);
    } else {
      rows[i].stream_type = unavailable;
    }
  }
  return 0;
}

bool isAttachedTo(const Section &channel, const char *usbslot) {
  char stored_slot[128];
  if (channel.get(keys::exists) == 0) return false;
  channel.get(keys::usbslot, stored_slot);
  return isSame(stored_slot, usbslot);
}

}  // namespace
}  // namespace usbdev

int vl_get_available_dev(_availinfo *rows) {
  using namespace usbdev;
  if (listAvailable(rows, kNone, kNoStream) != 0) return -1;
  for (int i = 0; i < kChannels; ++i) {
    if (rows[i].stream_type == kVideoOnly) rows[i].aenable = 0;  // here only, not for the devices of a profile
  }
  return 0;
}

int vl_get_available_dev_N_channel(_availinfo *rows, int profile) {
  using namespace usbdev;
  if (profile != kNone && !isProfile(profile)) return -1;
  return listAvailable(rows, profile, kNotAvailable);
}

int vl_get_usbslot_video_cap(const char *usbslot, char *cap) {
  using namespace usbdev;
  if (usbslot == nullptr || cap == nullptr) return -1;
  const ConfigReader config;
  if (!config) return -1;
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    if (!isAttachedTo(channel, usbslot)) continue;
    if (channel.get(keys::vnode) == kNone || channel.get(keys::slot_switch, 1) == 0) return -1;
    char text[kShortCodeSize];
    channel.get(keys::cap, text);
    copyCut(cap, text, sizeof text - 1);
    return 0;
  }
  return 0;
}

int vl_get_usbslot_info(const char *usbslot, _streaminfo *info) {
  using namespace usbdev;
  if (usbslot == nullptr || info == nullptr) return -1;
  info->channel = kNone;
  info->stream_type = kNoStream;
  presetSettings(kSlotInfo, *info);
  std::memset(info->fetype, 0, 4);  // no more of it is preset
  const ConfigReader config;
  if (!config) return -1;
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    if (!isAttachedTo(channel, usbslot)) continue;
    info->channel = i;  // of two channels with the slot the last one counts
    readSettings(kSlotInfo, channel, *info);
    info->stream_type = streamType(info->vnode, info->anode);
  }
  return 0;
}
