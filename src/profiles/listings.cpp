#include <usbdev/profiles.h>

#include <cstring>

#include "core/profile_mapping.h"
#include "core/text.h"
#include "devices/channel_records.h"
#include "devices/formats.h"
#include "devices/stream_type.h"

namespace usbdev {
namespace {

/// Profile ids as text, each with a comma in front of it, cut at 15 characters.
class ProfileList {
 public:
  void add(int profile) { appendNumber(text_, ",%d", profile); }

  /// Gives the ids and commas behind the first comma and no terminator, as callers expect it; of no ids nothing.
  void giveTo(char *out) const {
    if (text_[0] != '\0') std::memcpy(out, text_ + 1, std::strlen(text_ + 1));
  }

 private:
  char text_[16] = "";
};

/// The camera is asked last, and only when nothing else settles it.
bool canStream(HostAnswers &host, const Section &channel) {
  if (channel.get(keys::exists) == 0 || channel.get(keys::conflictch) != kNone) return false;
  if (channel.get(keys::anode) != kNone) return true;
  const int vnode = channel.get(keys::vnode);
  _usbfmt_des formats[USBDEV_FORMATS];
  bool over60 = false;
  return vnode != kNone && listFormats(host, vnode, formats, over60) > 0;
}

}  // namespace
}  // namespace usbdev

int vl_get_available_profile(char *out) {
  using namespace usbdev;
  if (out == nullptr) return -1;
  const ConfigReader config;
  if (!config) return -1;
  bool used[kProfiles] = {};
  for (int i = 0; i < kChannels; ++i) {
    const int profile = config.channel(i).get(keys::profile);
    if (isProfile(profile)) used[profile] = true;
  }
  ProfileList free_profiles;
  for (int i = 0; i < kProfiles; ++i) {
    if (!used[i]) free_profiles.add(i);
  }
  free_profiles.giveTo(out);
  return 0;
}

int vl_get_usbdev_list(char *out) {
  using namespace usbdev;
  if (out == nullptr) return -1;
  const ReaderOverCommands config;
  if (!config) return -1;
  HostAnswers host;
  ProfileList streamable;
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    const int profile = channel.get(keys::profile);
    if (isProfile(profile) && canStream(host, channel)) streamable.add(profile);
  }
  streamable.giveTo(out);
  return 0;
}

int vl_get_devpf_list(_usbdev_entry *rows) {
  using namespace usbdev;
  if (rows == nullptr) return -1;
  const ConfigReader config;
  if (!config) return -1;
  std::memset(rows, 0, kChannels * sizeof *rows);
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    if (channel.get(keys::exists) == 0) continue;
    readDeviceRow(channel, rows[i]);
    const StreamType type = readStreamType(channel);
    rows[i].stream_type = static_cast<int>(type);
    if (type == StreamType::video) rows[i].aenable = 0;
  }
  return 0;
}

int vl_get_profile_list(_usbdev_entry *rows) {
  using namespace usbdev;
  if (rows == nullptr) return -1;
  const ConfigReader config;
  if (!config) return -1;
  std::memset(rows, 0, kProfiles * sizeof *rows);
  for (int i = 0; i < kProfiles; ++i) rows[i].profile = kNone;
  for (int i = 0; i < kChannels; ++i) {
    const Section &channel = config.channel(i);
    const int profile = channel.get(keys::profile);
    if (!isProfile(profile)) continue;
    _usbdev_entry &row = rows[profile];
    readProfileRow(channel, row);
    const StreamType type = readStreamType(channel);
    row.stream_type = static_cast<int>(type);
    row.mjpeg = 0;
    if (!hasVideo(type)) continue;
    addVideoToRow(channel, row);
    row.mjpeg = static_cast<Codec>(row.vcodec) == Codec::mjpeg ? 1 : 0;
  }
  return 0;
}
