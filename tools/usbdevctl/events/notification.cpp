// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "events/notification.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "output/numbers.h"

namespace usbdevctl {

namespace {

constexpr std::string_view kMagic = "ORDA_VLM2_CFCG_N";
constexpr std::size_t kHeaderAt = 16;
constexpr std::size_t kProfileAt = 32;
constexpr std::size_t kVideoNodeAt = 36;
constexpr std::size_t kAudioNodeAt = 40;
constexpr std::size_t kFlagAt = 44;
constexpr std::size_t kEventAt = 48;
constexpr std::size_t kTargetAt = 52;

constexpr std::int32_t kChanged = 0;  // settings, or what streams
constexpr std::int32_t kPlugged = 6;
constexpr std::int32_t kRemoved = 7;

// Sender and receiver run on one host, so numbers are in its own byte order.
std::int32_t numberAt(std::string_view datagram, std::size_t offset) {
  std::int32_t number = 0;
  std::memcpy(&number, datagram.data() + offset, sizeof number);
  return number;
}

void appendNumber(std::string &datagram, std::int32_t number) {
  datagram.append(reinterpret_cast<const char *>(&number), sizeof number);
}

std::string eventText(std::int32_t event) {
  const std::string code = std::to_string(event);
  if (event == kChanged) return code + " (changed)";
  if (event == kPlugged) return code + " (plugged)";
  return event == kRemoved ? code + " (removed)" : code;
}

std::string hexadecimal(const std::array<unsigned char, 16> &bytes) {
  std::string text;
  char digits[3];
  for (const unsigned char byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(byte));
    text += digits;
  }
  return text;
}

bool isZero(unsigned char byte) { return byte == 0; }

// A header of nothing but an address, in its bytes 4 to 7, is that of the client whose request cleared a profile.
std::optional<std::string> clientAddress(const std::array<unsigned char, 16> &header) {
  const auto *const address = header.begin() + 4;
  const bool only_address = std::all_of(header.begin(), address, isZero) &&
                            !std::all_of(address, address + 4, isZero) &&
                            std::all_of(address + 4, header.end(), isZero);
  if (!only_address) return std::nullopt;
  return std::to_string(address[0]) + "." + std::to_string(address[1]) + "." + std::to_string(address[2]) + "." +
         std::to_string(address[3]);
}

std::string requestText(const std::array<unsigned char, 16> &header) {
  if (std::all_of(header.begin(), header.end(), isZero)) return "none";
  return clientAddress(header).value_or(hexadecimal(header));
}

}  // namespace

std::optional<Notification> decodeNotification(std::string_view datagram, std::string &reason) {
  if (datagram.size() != kNotificationSize) {
    reason = "it has " + std::to_string(datagram.size()) + " bytes, not " + std::to_string(kNotificationSize);
    return std::nullopt;
  }
  if (datagram.substr(0, kMagic.size()) != kMagic) {
    reason = "it does not begin with " + std::string(kMagic);
    return std::nullopt;
  }
  Notification notification = {};
  std::memcpy(notification.header.data(), datagram.data() + kHeaderAt, notification.header.size());
  notification.profile = numberAt(datagram, kProfileAt);
  notification.video_node = numberAt(datagram, kVideoNodeAt);
  notification.audio_node = numberAt(datagram, kAudioNodeAt);
  notification.flag = numberAt(datagram, kFlagAt);
  notification.event = numberAt(datagram, kEventAt);
  notification.target = numberAt(datagram, kTargetAt);
  return notification;
}

std::string encodeNotification(const Notification &notification) {
  std::string datagram(kMagic);
  datagram.append(notification.header.begin(), notification.header.end());
  for (const std::int32_t number : {notification.profile, notification.video_node, notification.audio_node,
                                    notification.flag, notification.event, notification.target}) {
    appendNumber(datagram, number);
  }
  return datagram;
}

std::string notificationText(const Notification &notification) {
  return "event " + eventText(notification.event) + "  profile " + numberText(notification.profile) + "  video " +
         numberText(notification.video_node) + "  audio " + numberText(notification.audio_node) + "  flag " +
         std::to_string(notification.flag) + "  target " + numberText(notification.target) + "  request " +
         requestText(notification.header) + "\n";
}

Json notificationJson(const Notification &notification) {
  return Json::document()
      .set("event", notification.event)
      .set("profile", notification.profile)
      .set("video_node", notification.video_node)
      .set("audio_node", notification.audio_node)
      .set("flag", notification.flag)
      .set("target", notification.target)
      .set("header", hexadecimal(notification.header))
      .set("client", clientAddress(notification.header));
}

}  // namespace usbdevctl
