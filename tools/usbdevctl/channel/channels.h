// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The ten channels as one table, put together from the library's listings: none of them alone has every
// channel. The device table leaves out channels whose device is unplugged, the availability query those with a profile
// and waiting ones, and the profile table those without a profile.
#pragma once

#include <usbdev/records.h>

#include <array>
#include <optional>
#include <string>

#include "machine/machine.h"
#include "output/fields.h"

namespace usbdevctl {

/// What the listings answered, one after the other: a device that is plugged in or removed meanwhile may be in some
/// only.
struct ChannelListings {
  std::array<_usbdev_entry, USBDEV_CHANNELS> devices = {};
  std::array<_availinfo, USBDEV_CHANNELS> available = {};
  std::array<_usbdev_entry, USBDEV_PROFILES> profiles = {};
  std::array<int, USBDEV_CHANNELS> profile_ids = {};
  /// What the slot of each channel's device answers; only that of a channel with a device is read.
  std::array<_streaminfo, USBDEV_CHANNELS> slots = {};
};

enum class ChannelState {
  free,       // never had a device
  plugged,    // its device is attached
  unplugged,  // keeps the place of a device that is not attached
  displaced,  // another camera was put into its port
};

struct ChannelRow {
  ChannelState state = ChannelState::free;
  std::string slot;
  std::string device;
  std::optional<int> video_node;
  std::optional<int> profile;
  std::string profile_name;
  std::optional<bool> slot_switch;
  std::optional<int> parked_behind;
  bool supported = true;
  std::string created;
  std::optional<Reason> trouble;  // what the machine has against it, if it was asked
};

using ChannelRows = std::array<ChannelRow, USBDEV_CHANNELS>;

inline const ChannelRow &rowOf(const ChannelRows &rows, int channel) { return rows[static_cast<std::size_t>(channel)]; }

ChannelRows describeChannels(const ChannelListings &listings);

/// A row of the device table or of the profile table whose device is known.
ChannelRow channelRow(const _usbdev_entry &entry);

/// The channel's camera as the machine has it.
CameraPlace placeOf(const ChannelRow &row);

const char *stateName(ChannelState state);

/// Whether the channel's camera streams, according to the configuration: attached, with a profile, supported, not
/// waiting, its port on.
bool streams(const ChannelRow &row);

/// What keeps a camera that has a profile from streaming; empty where nothing does.
std::string streamLackText(const ChannelRow &row);

FieldRows channelFields(const ChannelRows &rows);

/// The port of a device; for programs it is the slot, as in the library's records.
Field portField(const std::string &slot);

/// The fields that begin and end a channel's description wherever it is listed.
void addIdentity(Fields &fields, std::size_t channel, const ChannelRow &row);
void addStanding(Fields &fields, const ChannelRow &row);

}  // namespace usbdevctl
