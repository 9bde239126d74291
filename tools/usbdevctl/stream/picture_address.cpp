// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/picture_address.h"

#include <sys/stat.h>

#include "machine/stream_failure.h"

namespace usbdevctl {

namespace {

constexpr char kSeen[] = "/mnt/ext/opt/apps";
constexpr char kOwn[] = "/var/lib/usbdev/apps";

bool areOne(const std::string &folder, const std::string &other) {
  struct stat one = {};
  struct stat two = {};
  return stat(folder.c_str(), &one) == 0 && stat(other.c_str(), &two) == 0 && one.st_dev == two.st_dev &&
         one.st_ino == two.st_ino;
}

}  // namespace

std::string pictureAddress(int profile, const std::string &root) {
  if (!areOne(root + kSeen, root + kOwn)) return "";
  return std::string("file://") + kOwn + streamFolder(profile).substr(sizeof kSeen - 1) + "/playlist.m3u8";
}

}  // namespace usbdevctl
