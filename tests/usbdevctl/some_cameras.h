// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Cameras, channels and records of the library as several tests have them.
#pragma once

#include "camera/camera.h"
#include "text_fields.h"

inline usbdevctl::Camera someCamera(int channel, const char *port, std::optional<int> profile,
                                    usbdevctl::ChannelState state = usbdevctl::ChannelState::plugged) {
  usbdevctl::Camera camera;
  camera.channel = channel;
  camera.row.slot = port;
  camera.row.device = "USB Camera";
  camera.row.profile = profile;
  camera.row.state = state;
  return camera;
}

/// A channel whose camera is attached, to a port that is on.
inline usbdevctl::ChannelRow attachedRow(const char *port, std::optional<int> profile = std::nullopt) {
  usbdevctl::ChannelRow row;
  row.state = usbdevctl::ChannelState::plugged;
  row.slot = port;
  row.device = "Cam";
  row.profile = profile;
  row.slot_switch = true;
  return row;
}

/// The same channel as the library lists it, with the profile "Door".
inline _usbdev_entry attachedEntry(int profile) {
  _usbdev_entry entry = {};
  entry.exists = 1;
  entry.profile = profile;
  entry.conflictch = -1;
  entry.slot_switch = 1;
  entry.stream_type = 2;
  setField(entry.profilename, "Door");
  setField(entry.usbslot, "3-1");
  setField(entry.devname, "Cam");
  return entry;
}
