// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The change notification, as usbdevctl and the manager decode it.
#include "events/notification.h"

#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "embedded_python.h"
#include "expect.h"

namespace {

using fuzz::expect;

std::string described(const std::optional<usbdevctl::Notification> &notification, const std::string &reason) {
  return notification ? usbdevctl::notificationText(*notification) : reason + "\n";
}

void expectSame(const usbdevctl::Notification &notification, std::string_view datagram) {
  std::string same = "ORDA_VLM2_CFCG_N" + std::string(notification.header.begin(), notification.header.end());
  for (const std::int32_t number : {notification.profile, notification.video_node, notification.audio_node,
                                    notification.flag, notification.event, notification.target}) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    same.append(bytes, sizeof bytes);
  }
  expect(same == datagram, "a decoded notification has every byte of its datagram");
  const auto json = nlohmann::json::parse(usbdevctl::notificationJson(notification).line());
  expect(json["profile"] == notification.profile && json["target"] == notification.target,
         "a notification is printed as it is");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const fuzz::PythonTarget manager("manager_notification");
  const std::string_view datagram(reinterpret_cast<const char *>(data), size);
  std::string reason;
  const auto notification = usbdevctl::decodeNotification(datagram, reason);
  expect(notification.has_value() == reason.empty(), "what cannot be decoded has a reason");
  if (notification) expectSame(*notification, datagram);
  expect(described(notification, reason) == manager.call(data, size) + "\n", "the manager decodes what usbdevctl does");
  return 0;
}
