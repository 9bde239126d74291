// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/core.h>

#include <cstring>

#include "core/change_notification.h"
#include "core/host_queries.h"
#include "core/profile_mapping.h"
#include "core/text.h"

char *trim(char *text) { return text == nullptr ? nullptr : usbdev::trim(text); }

char *trimdatetime(char *text, const char *remove) {
  if (text != nullptr && remove != nullptr) usbdev::removeAll(text, *remove);
  return text;
}

int get_two_params(char *line, const char *separator, char *left, char *right) {
  if (line == nullptr || separator == nullptr || left == nullptr || right == nullptr) return -1;
  const usbdev::Pair sides = usbdev::splitPair(line, separator);
  if (!sides) return -1;
  std::memmove(left, sides.left, std::strlen(sides.left) + 1);
  std::memmove(right, sides.right, std::strlen(sides.right) + 1);
  return 1;
}

int process_json_string(char *text, int capacity) {
  if (text == nullptr || capacity < 0) return 0;
  return usbdev::escapeJson({text, static_cast<std::size_t>(capacity)}) ? 1 : 0;
}

int get_bndl_install_path(const char *package, char *path) {
  if (package == nullptr || path == nullptr) return -1;
  return usbdev::askPackageRegistry(package, "Install_Path", {path, usbdev::kPackageTextSize}) ? 0 : -1;
}

int get_bndl_info(const char *package, const char *field, char *value) {
  if (package == nullptr || field == nullptr || value == nullptr) return -1;
  return usbdev::askPackageRegistry(package, field, {value, usbdev::kPackageTextSize}) ? 0 : -1;
}

int get_nas_info(const char *key, char *value) {
  if (key == nullptr || value == nullptr) return -1;
  return usbdev::copyHostSetting(key, {value, usbdev::kHostTextSize}) == usbdev::HostSetting::unreadable ? -1 : 0;
}

int AMDmodel_oneChannelLimited(void) { return usbdev::isOneChannelLimited() ? 1 : 0; }

int trsProfiletoPlugCh(int profile, int *channel) {
  if (channel == nullptr) return -1;
  const int found = usbdev::channelOfProfile(profile);
  if (found == usbdev::kNone) return -1;
  *channel = found;
  return 0;
}

int vl_getDevName(int profile, char *name) {
  char devname[256];
  if (name == nullptr || !usbdev::readDeviceName(profile, devname)) return -1;
  usbdev::copyCut(name, devname, sizeof devname - 1);
  return 0;
}

int vl_settingNotify(const void *datagram) {
  if (datagram == nullptr) return -1;
  usbdev::ChangeNotification notification(usbdev::kNone, usbdev::EventCode{});
  std::memcpy(&notification, datagram, sizeof notification);
  return usbdev::sendNotification(notification) ? 0 : -1;
}
