// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What a maintainer needs to know of a host, without its secrets.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "camera/camera.h"
#include "events/event_log.h"
#include "profile/profiles.h"
#include "report/redaction.h"

namespace usbdevctl {

using NamedTexts = std::vector<std::pair<std::string, std::string>>;

/// A camera that is attached, with what the host's tools print about it.
struct CameraAnswers {
  Camera camera;
  std::string formats;  // v4l2-ctl
  std::string walk;     // udevadm
};

/// The stored keys of a channel, "video/width" with its value.
struct StoredChannel {
  int channel = 0;
  NamedTexts keys;
};

struct Report {
  NamedTexts host;
  ChannelRows channels;
  Profiles profiles;
  std::vector<Event> events;
  std::vector<CameraAnswers> cameras;
  std::vector<StoredChannel> configuration;
};

/// Whether a key's value is a secret: a share link's password and identifiers, and the names of links.
bool isSecretKey(const std::string &key);

/// The report without the values of the configuration's secret keys and the serial numbers of the cameras, which are
/// removed from every text.
Report withoutSecrets(Report report);

std::string reportText(const Report &report);
Json reportJson(const Report &report);

}  // namespace usbdevctl
