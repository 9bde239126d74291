// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "devices/slots.h"

#include <cstring>

#include "devices/channel_records.h"
#include "devices/stream_type.h"

namespace usbdev {
namespace {

void fillAvailable(const Section &channel, _availinfo &row) {
  readAvailable(channel, row);
  const StreamType type = readStreamType(channel);
  row.stream_type = static_cast<int>(type);
  if (type == StreamType::audio) row.framerate = 0;
}

/// Lists the channels with a profile that do not wait for another one; the others get the stream type of unavailable
/// ones.
bool listAvailable(_availinfo *rows, int profile, StreamType unavailable) {
  const ConfigReader config;
  if (!config) return false;
  std::memset(rows, 0, kChannels * sizeof *rows);
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    // Intended: A device that is unplugged is offered too.
    if (channel.get(keys::profile) == profile && channel.get(keys::conflictch) == kNone) {
      fillAvailable(channel, rows[i]);
    } else {
      rows[i].stream_type = static_cast<int>(unavailable);
    }
  }
  return true;
}

bool isAttachedTo(const Section &channel, const char *usbslot) {
  char stored_slot[128];
  if (channel.get(keys::exists) == 0) return false;
  channel.get(keys::usbslot, stored_slot);
  return isSame(stored_slot, usbslot);
}

}  // namespace

bool listUnassigned(_availinfo *rows) {
  if (!listAvailable(rows, kNone, StreamType::none)) return false;
  for (int i = 0; i < kChannels; ++i) {
    // Intended: This query disables the audio of video alone.
    if (rows[i].stream_type == static_cast<int>(StreamType::video)) rows[i].aenable = 0;
  }
  return true;
}

bool listOfProfile(_availinfo *rows, int profile) { return listAvailable(rows, profile, StreamType::unavailable); }

bool readSlotCodecs(const char *usbslot, TextBuffer cap) {
  const ConfigReader config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    if (!isAttachedTo(channel, usbslot)) continue;
    if (channel.get(keys::vnode) == kNone || channel.get(keys::slot_switch, 1) == 0) return false;
    char text[16];
    channel.get(keys::cap, text);
    copyText(cap, text);
    return true;
  }
  return true;
}

bool readSlot(const char *usbslot, _streaminfo &info) {
  info.channel = kNone;
  info.stream_type = static_cast<int>(StreamType::none);
  presetSlotStream(info);
  const ConfigReader config;
  if (!config) return false;
  for (int i = 0; i < kChannels; ++i) {
    const Section channel = config.channel(i);
    if (!isAttachedTo(channel, usbslot)) continue;
    // Intended: The last channel with the port counts.
    info.channel = i;
    readSlotStream(channel, info);
    info.stream_type = static_cast<int>(streamTypeOf(info.vnode, info.anode));
  }
  return true;
}

}  // namespace usbdev
