// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "completion/camera_words.h"

namespace usbdevctl {

namespace {

constexpr char kOfPorts[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_";

std::string word(const std::string &name, const Camera &camera) { return name + '\t' + cameraText(camera) + '\n'; }

std::string portWord(const Camera &camera) {
  const std::string &port = camera.row.slot;
  const bool plain = !port.empty() && port.front() != '-' && port.find_first_not_of(kOfPorts) == std::string::npos;
  return plain ? word(port, camera) : "";
}

std::string numberWord(const char *prefix, std::optional<int> number, const Camera &camera) {
  return number ? word(prefix + std::to_string(*number), camera) : "";
}

}  // namespace

std::string cameraWords(const Cameras &cameras) {
  std::string words;
  for (const Camera &camera : cameras) {
    words += portWord(camera) + numberWord("ch", camera.channel, camera) + numberWord("pf", camera.row.profile, camera);
  }
  return words;
}

std::string portWords(const Cameras &cameras) {
  std::string words;
  for (const Camera &camera : cameras) words += portWord(camera);
  return words;
}

}  // namespace usbdevctl
