// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The datagram that reports a change to the manager.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "output/json.h"

namespace usbdevctl {

constexpr std::size_t kNotificationSize = 56;

struct Notification {
  std::array<unsigned char, 16> header;  // whatever identifies the request to the one who made it
  std::int32_t profile;
  std::int32_t video_node;
  std::int32_t audio_node;
  std::int32_t flag;
  std::int32_t event;
  std::int32_t target;
};

/// Nothing for a datagram of another size or with another beginning; `reason` is then why.
std::optional<Notification> decodeNotification(std::string_view datagram, std::string &reason);

std::string encodeNotification(const Notification &notification);

/// One line.
std::string notificationText(const Notification &notification);
Json notificationJson(const Notification &notification);

}  // namespace usbdevctl
