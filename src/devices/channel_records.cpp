#include "devices/channel_records.h"

#include <cstdlib>
#include <cstring>

namespace usbdev {
namespace {

/// One field of a record and the key that fills it: a number, a text, or with neither the frame rate.
struct Field {
  const IntKey *number;
  const TextPath *text;
  short offset;
  unsigned char read_by;
  unsigned char preset_by;
};

constexpr unsigned char kNobody = 0;
constexpr float kUsualRate = 30;

constexpr Field field(const IntKey *number, const TextPath *text, int offset, int read_by, int preset_by) {
  return {number, text, static_cast<short>(offset), static_cast<unsigned char>(read_by),
          static_cast<unsigned char>(preset_by)};
}

constexpr Field number(int offset, const IntKey &key, int read_by, int preset_by = kNobody) {
  return field(&key, nullptr, offset, read_by, preset_by);
}

constexpr Field text(int offset, const TextPath &key, int read_by, int preset_by = kNobody) {
  return field(nullptr, &key, offset, read_by, preset_by);
}

constexpr Field rate(int offset, int read_by, int preset_by) {
  return field(nullptr, nullptr, offset, read_by, preset_by);
}

// Keys that the records read with another default.
constexpr IntKey orElse(const IntKey &key, int otherwise) { return {key.key, key.sub_key, otherwise}; }
constexpr IntKey kSlotSwitchOn = orElse(keys::slot_switch, 1);
constexpr IntKey kAudioOff = orElse(keys::aenable, 0);

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
    number(atStream(offsetof(_streaminfo, slot_switch)), kSlotSwitchOn, kSlotInfo, kStreams),

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
    number(at(offsetof(_profile_info, aenable)), kAudioOff, kStreams, kPresetters),
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
    number(offsetof(_usbdev_entry, slot_switch), kSlotSwitchOn, kBothRows),
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

/// From the channel's key, or without a channel from what a missing key reads as; of texts that is nothing.
void put(const Field &field, const Section *channel, char *out) {
  if (field.text != nullptr) {
    if (channel == nullptr) {
      std::memset(out, 0, static_cast<std::size_t>(field.text->size));
    } else {
      channel->getText(*field.text, out);
    }
  } else if (field.number != nullptr) {
    const int value = channel == nullptr ? field.number->usual_default : channel->get(*field.number);
    std::memcpy(out, &value, sizeof value);
  } else {
    const float value = channel == nullptr ? kUsualRate : readRate(*channel);
    std::memcpy(out, &value, sizeof value);
  }
}

}  // namespace

float readRate(const Section &channel) {
  char text[16];
  channel.get(keys::framerate, text);
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
