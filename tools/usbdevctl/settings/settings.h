// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The settings of a host's cameras as they are carried from one host, or camera, to another.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "stream/stream_settings.h"

namespace usbdevctl {

struct ShareSettings {
  bool enabled = false;
  std::string password;  // empty where there is none
};

struct ProfileSettings {
  int profile = 0;
  std::string name;
  StreamChange stream;
  ShareSettings share;
};

struct CameraSettings {
  std::string port;
  std::string device;
  bool port_on = true;
  std::optional<ProfileSettings> profile;
};

using Settings = std::vector<CameraSettings>;

bool operator==(const ShareSettings &one, const ShareSettings &other);
bool operator==(const StreamChange &one, const StreamChange &other);

/// Whether two rates are stored as the same text.
bool sameRate(float one, float other);

std::string settingsText(const Settings &settings);

/// Reads what settingsText wrote; nothing for anything else, `wrong` is then what is wrong with it.
std::optional<Settings> readSettings(const std::string &text, std::string &wrong);

}  // namespace usbdevctl
