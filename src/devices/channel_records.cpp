#include "devices/channel_records.h"

#include <cstdlib>
#include <cstring>

namespace usbdev {
namespace {

enum class FieldType : unsigned char { number, rate, text16, text64, text128, text256 };

/// One field of a record and the key that fills it.
struct Field {
  const char *key;
  const char *sub_key;
  int otherwise;
  short offset;
  FieldType type;
  unsigned char read_by;
  unsigned char preset_by;
};

constexpr unsigned char kNobody = 0;
constexpr float kUsualRate = 30;

constexpr Field number(int offset, const IntKey &key, int read_by, int preset_by = kNobody) {
  return {key.key,
          key.sub_key,
          key.usual_default,
          static_cast<short>(offset),
          FieldType::number,
          static_cast<unsigned char>(read_by),
          static_cast<unsigned char>(preset_by)};
}

/// The same key, read with another default.
constexpr IntKey orElse(const IntKey &key, int otherwise) { return {key.key, key.sub_key, otherwise}; }

template <std::size_t N>
constexpr Field text(int offset, const TextKey<N> &key, int read_by, int preset_by = kNobody) {
  Field field = number(offset, {key.key, key.sub_key, 0}, read_by, preset_by);
  field.type = N == 16    ? FieldType::text16
               : N == 64  ? FieldType::text64
               : N == 128 ? FieldType::text128
                          : FieldType::text256;
  static_assert(N == 16 || N == 64 || N == 128 || N == 256);
  return field;
}

constexpr Field rate(int offset, int read_by, int preset_by) {
  Field field = text(offset, keys::framerate, read_by, preset_by);
  field.type = FieldType::rate;
  return field;
}

// _availinfo, _profile_info and, from the video node on, _streaminfo are laid out alike, so that one list serves all:
// offsets count from the video node.
constexpr int at(std::size_t offset) {
  return static_cast<int>(offset) - static_cast<int>(offsetof(_profile_info, vnode));
}
constexpr int atStream(std::size_t offset) {
  return static_cast<int>(offset) - static_cast<int>(offsetof(_streaminfo, vnode));
}
constexpr int atAvailable(std::size_t offset) {
  return static_cast<int>(offset) - static_cast<int>(offsetof(_availinfo, vnode));
}
static_assert(at(offsetof(_profile_info, usbslot)) == atAvailable(offsetof(_availinfo, usbslot)));
static_assert(at(offsetof(_profile_info, devname)) == atAvailable(offsetof(_availinfo, devname)));
static_assert(at(offsetof(_profile_info, framerate)) == atStream(offsetof(_streaminfo, framerate)) &&
              at(offsetof(_profile_info, framerate)) == atAvailable(offsetof(_availinfo, framerate)));
static_assert(at(offsetof(_profile_info, fetype)) == atStream(offsetof(_streaminfo, fetype)) &&
              at(offsetof(_profile_info, fetype)) == atAvailable(offsetof(_availinfo, fetype)));
static_assert(at(offsetof(_profile_info, aenable)) == atStream(offsetof(_streaminfo, aenable)) &&
              at(offsetof(_profile_info, aenable)) == atAvailable(offsetof(_availinfo, aenable)));
static_assert(at(offsetof(_profile_info, volume)) == atStream(offsetof(_streaminfo, volume)) &&
              at(offsetof(_profile_info, volume)) == atAvailable(offsetof(_availinfo, volume)));
static_assert(at(offsetof(_profile_info, ldspoutput)) == atStream(offsetof(_streaminfo, ldspoutput)) &&
              at(offsetof(_profile_info, ldspoutput)) == atAvailable(offsetof(_availinfo, ldspoutput)));
static_assert(at(offsetof(_profile_info, acap)) == atStream(offsetof(_streaminfo, vtag)) &&
              at(offsetof(_profile_info, acap)) == atAvailable(offsetof(_availinfo, acap)));

constexpr int kStreams = kSlotInfo | kStreamInfo;     // the two readers of _streaminfo
constexpr int kPages = kAvailability | kProfileInfo;  // the readers of the two records that name the device
constexpr int kEveryone = kStreams | kPages;
constexpr int kPresetters = kStreams | kProfileInfo;

// Field, key, who reads it, who presets it.
constexpr Field kSettings[] = {
    number(at(offsetof(_profile_info, exists)), keys::exists, kProfileInfo),
    text(at(offsetof(_profile_info, profilename)), keys::profilename, kProfileInfo),
    text(at(offsetof(_profile_info, usbslot)), keys::usbslot, kPages),
    text(at(offsetof(_profile_info, devname)), keys::devname, kPages),
    number(atStream(offsetof(_streaminfo, slot_switch)), orElse(keys::slot_switch, 1), kSlotInfo, kStreams),

    number(at(offsetof(_profile_info, vnode)), keys::vnode, kEveryone, kPresetters),
    number(at(offsetof(_profile_info, vprofile)), keys::profile, kSlotInfo, kPresetters),
    number(at(offsetof(_profile_info, vcodec)), keys::vcodec, kEveryone, kPresetters),
    number(at(offsetof(_profile_info, venable)), keys::venable, kStreams, kPresetters),
    number(at(offsetof(_profile_info, spsstate)), keys::spsstate, kStreams, kPresetters),
    number(at(offsetof(_profile_info, width)), keys::width, kEveryone, kPresetters),
    number(at(offsetof(_profile_info, height)), keys::height, kEveryone, kPresetters),
    rate(at(offsetof(_profile_info, framerate)), kEveryone, kPresetters),
    text(at(offsetof(_profile_info, fetype)), keys::fetype, kEveryone, kStreamInfo | kProfileInfo),

    number(at(offsetof(_profile_info, anode)), keys::anode, kStreams, kPresetters),
    number(at(offsetof(_profile_info, aprofile)), keys::profile, kSlotInfo, kPresetters),
    number(at(offsetof(_profile_info, acodec)), keys::acodec, kEveryone, kPresetters),
    // Audio that was never switched counts as off in a stream record, as on elsewhere.
    number(at(offsetof(_profile_info, aenable)), orElse(keys::aenable, 0), kStreams, kPresetters),
    number(at(offsetof(_profile_info, aenable)), keys::aenable, kPages),
    number(at(offsetof(_profile_info, samplerate)), keys::samplerate, kStreams | kProfileInfo, kPresetters),
    number(at(offsetof(_profile_info, channelno)), keys::channelno, kStreams, kPresetters),
    number(at(offsetof(_profile_info, bitrate)), keys::bitrate, kStreams | kProfileInfo, kPresetters),
    number(at(offsetof(_profile_info, volume)), keys::volume, kEveryone, kPresetters),

    number(at(offsetof(_profile_info, osdenable)), keys::osdenable, kEveryone, kStreamInfo | kProfileInfo),
    number(at(offsetof(_profile_info, flip)), keys::flip, kEveryone, kStreamInfo | kProfileInfo),
    number(at(offsetof(_profile_info, mirror)), keys::mirror, kEveryone, kStreamInfo | kProfileInfo),
    number(at(offsetof(_profile_info, ldspoutput)), keys::ldspoutput, kEveryone, kStreamInfo | kProfileInfo),
    text(at(offsetof(_profile_info, acap)), keys::acap, kPages, kProfileInfo),
    text(atStream(offsetof(_streaminfo, vtag)), keys::vtag, kStreamInfo, kStreamInfo),
};

constexpr int kBothRows = kDeviceRow | kProfileRow;

// Field, key, who reads it.
constexpr Field kRow[] = {
    text(offsetof(_usbdev_entry, profilename), keys::profilename, kBothRows),
    text(offsetof(_usbdev_entry, usbslot), keys::usbslot, kBothRows),
    text(offsetof(_usbdev_entry, devname), keys::devname, kBothRows),
    number(offsetof(_usbdev_entry, slot_switch), orElse(keys::slot_switch, 1), kBothRows),
    number(offsetof(_usbdev_entry, exists), keys::exists, kBothRows),
    number(offsetof(_usbdev_entry, conflictch), keys::conflictch, kBothRows),
    text(offsetof(_usbdev_entry, createtime), keys::createtime, kBothRows),
    number(offsetof(_usbdev_entry, profile), keys::profile, kBothRows),
    number(offsetof(_usbdev_entry, vcodec), keys::vcodec, kVideoRow),
    number(offsetof(_usbdev_entry, aenable), keys::aenable, kDeviceRow),
    text(offsetof(_usbdev_entry, vtag), keys::vtag, kVideoRow),
    number(offsetof(_usbdev_entry, shrenable), keys::shrenable, kDeviceRow | kVideoRow),
    text(offsetof(_usbdev_entry, hlspath), keys::hlspath, kVideoRow),
};

/// Text fields of `N` bytes; without a channel they become empty.
template <std::size_t N>
void putText(const Field &field, const Section *channel, char *out) {
  if (channel == nullptr) {
    std::memset(out, 0, N);
  } else {
    channel->get(TextKey<N>{field.key, field.sub_key}, *reinterpret_cast<char(*)[N]>(out));
  }
}

void putNumber(const Field &field, const Section *channel, char *out) {
  const IntKey key{field.key, field.sub_key, field.otherwise};
  const int value = channel == nullptr ? field.otherwise : channel->get(key);
  std::memcpy(out, &value, sizeof value);
}

void putRate(const Section *channel, char *out) {
  const float value = channel == nullptr ? kUsualRate : readRate(*channel);
  std::memcpy(out, &value, sizeof value);
}

/// From the channel's key, or without a channel from what a missing key reads as.
void put(const Field &field, const Section *channel, char *out) {
  switch (field.type) {
    case FieldType::number:
      return putNumber(field, channel, out);
    case FieldType::rate:
      return putRate(channel, out);
    case FieldType::text16:
      return putText<16>(field, channel, out);
    case FieldType::text64:
      return putText<64>(field, channel, out);
    case FieldType::text128:
      return putText<128>(field, channel, out);
    case FieldType::text256:
      return putText<256>(field, channel, out);
  }
}

}  // namespace

float readRate(const Section &channel) {
  char text[16];
  channel.get(keys::framerate, text, "30.00");
  return static_cast<float>(std::atof(text));
}

void presetSettings(RecordReader reader, char *vnode) {
  for (const Field &field : kSettings) {
    if ((field.preset_by & reader) != 0) put(field, nullptr, vnode + field.offset);
  }
}

void readSettings(RecordReader reader, const Section &channel, char *vnode) {
  for (const Field &field : kSettings) {
    if ((field.read_by & reader) != 0) put(field, &channel, vnode + field.offset);
  }
}

void readRow(RecordReader reader, const Section &channel, _usbdev_entry &row) {
  for (const Field &field : kRow) {
    if ((field.read_by & reader) != 0) put(field, &channel, reinterpret_cast<char *>(&row) + field.offset);
  }
}

}  // namespace usbdev
