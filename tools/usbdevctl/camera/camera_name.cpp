// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera_name.h"

#include <usbdev/records.h>

#include <algorithm>
#include <iterator>
#include <limits>

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

using By = CameraName::By;

constexpr std::size_t kPortLimit = sizeof(_usbdev_des::usbslot) - 1;

struct Numbered {
  By by;
  const char *prefix;
  const char *word;
  int most;
};

constexpr Numbered kNumbered[] = {
    {By::channel, "ch", "channel", USBDEV_CHANNELS - 1},
    {By::profile, "pf", "profile", USBDEV_PROFILES - 1},
    {By::video_node, "/dev/video", "video node", std::numeric_limits<int>::max()},
};

const Numbered &kindOf(By by) {
  return *std::find_if(std::begin(kNumbered), std::end(kNumbered),
                       [by](const Numbered &kind) { return kind.by == by; });
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string wantedNumber(const Numbered &kind) {
  return kind.by == By::video_node ? "at least 0" : "0 to " + std::to_string(kind.most);
}

std::optional<CameraName> numbered(const Numbered &kind, std::string_view digits, std::string &wrong) {
  const std::optional<int> number = readNumber(digits);
  if (number && *number <= kind.most) return CameraName{kind.by, *number, ""};
  wrong = std::string(kind.word) + " must be " + wantedNumber(kind) + ", not " + std::string(digits);
  return std::nullopt;
}

std::optional<CameraName> readPort(const std::string &text, std::string &wrong) {
  if (text.size() > kPortLimit) {
    wrong = "the port's name is longer than " + std::to_string(kPortLimit) + " bytes";
    return std::nullopt;
  }
  return CameraName{By::port, -1, text};
}

bool hasName(const Camera &camera, const CameraName &name) {
  switch (name.by) {
    case By::port:
      return camera.row.slot == name.port;
    case By::channel:
      return camera.channel == name.number;
    case By::profile:
      return camera.row.profile == name.number;
    case By::video_node:
      return camera.row.video_node == name.number;
  }
  return false;
}

}  // namespace

std::optional<CameraName> readCameraName(const std::string &text, By bare_number, std::string &wrong) {
  for (const Numbered &kind : kNumbered) {
    const std::string_view prefix = kind.prefix;
    if (text.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string_view digits = std::string_view(text).substr(prefix.size());
    if (isDigits(digits)) return numbered(kind, digits, wrong);
  }
  if (isDigits(text)) return numbered(kindOf(bare_number), text, wrong);
  const std::size_t dash = text.find('-');
  if (dash != std::string::npos && dash > 0) return readPort(text, wrong);
  wrong = "'" + text + "' is not a port (3-1.2), channel (ch2), profile (pf1) or number";
  return std::nullopt;
}

Cameras namedCameras(const Cameras &cameras, const CameraName &name) {
  Cameras named;
  std::copy_if(cameras.begin(), cameras.end(), std::back_inserter(named),
               [&name](const Camera &camera) { return hasName(camera, name); });
  const auto attached = std::find_if(named.begin(), named.end(), isAttached);
  return attached == named.end() ? named : Cameras{*attached};
}

std::string nameText(const CameraName &name) {
  if (name.by == By::port) return "port " + printable(name.port);
  return std::string(kindOf(name.by).word) + " " + std::to_string(name.number);
}

}  // namespace usbdevctl
