// The records that describe a channel to the settings pages, filled from its keys.
#pragma once

#include <usbdev/records.h>

#include <cstddef>

#include "core/config.h"

namespace usbdev {

/// Who fills a record; each takes its own choice of the fields.
enum RecordReader : unsigned char {
  kAvailability = 1,  // _availinfo
  kSlotInfo = 2,      // _streaminfo of a slot
  kStreamInfo = 4,    // _streaminfo of a profile
  kProfileInfo = 8,   // _profile_info
  kDeviceRow = 16,    // _usbdev_entry of the device table
  kProfileRow = 32,   // _usbdev_entry of the profile table
  kVideoRow = 64,     // what a profile with video adds to its row
};

void presetSettings(RecordReader reader, char *vnode);
void readSettings(RecordReader reader, const Section &channel, char *vnode);

/// Sets the fields that the reader presets to what missing keys read as; the others stay as they are.
template <typename Record>
void presetSettings(RecordReader reader, Record &record) {
  presetSettings(reader, reinterpret_cast<char *>(&record) + offsetof(Record, vnode));
}

/// Fills the fields that the reader takes.
template <typename Record>
void readSettings(RecordReader reader, const Section &channel, Record &record) {
  readSettings(reader, channel, reinterpret_cast<char *>(&record) + offsetof(Record, vnode));
}

void readRow(RecordReader reader, const Section &channel, _usbdev_entry &row);

constexpr int kNoStream = 0;
constexpr int kAudioOnly = 1;
constexpr int kVideoOnly = 2;
constexpr int kVideoAndAudio = 3;

/// What a channel with these nodes streams; `without` when it has none.
constexpr int streamType(int vnode, int anode, int without = kNoStream) {
  if (vnode == kNone) return anode == kNone ? without : kAudioOnly;
  return anode == kNone ? kVideoOnly : kVideoAndAudio;
}

inline int readStreamType(const Section &channel) {
  return streamType(channel.get(keys::vnode), channel.get(keys::anode));
}

constexpr bool hasVideo(int stream_type) { return stream_type == kVideoOnly || stream_type == kVideoAndAudio; }
constexpr bool hasAudio(int stream_type) { return stream_type == kAudioOnly || stream_type == kVideoAndAudio; }

/// The stored frame rate; 30 when there is none.
float readRate(const Section &channel);

}  // namespace usbdev
