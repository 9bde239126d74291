// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera.h"

#include <utility>

#include "output/numbers.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr char kSpace[] = "  ";

std::string profileText(const ChannelRow &row) {
  return row.profile ? "profile " + std::to_string(*row.profile) : "no profile";
}

}  // namespace

Cameras camerasOf(const ChannelRows &rows) {
  Cameras cameras;
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    const ChannelRow &row = rows[channel];
    if (row.state != ChannelState::free || row.profile) cameras.push_back({static_cast<int>(channel), row});
  }
  return cameras;
}

bool isAttached(const Camera &camera) { return camera.row.state == ChannelState::plugged; }

std::string cameraText(const Camera &camera) {
  const ChannelRow &row = camera.row;
  std::string text = "channel " + std::to_string(camera.channel) + kSpace + printable(row.slot) + kSpace + '"' +
                     printable(row.device) + '"' + kSpace + profileText(row);
  if (!isAttached(camera)) text += std::string(kSpace) + stateName(row.state);
  return text;
}

void addCameraMembers(Fields &fields, const Camera &camera) {
  fields.add(forPrograms("channel", numberUnlessNone(camera.channel)))
      .add(forPrograms("slot", camera.row.slot))
      .add(forPrograms("device", camera.row.device))
      .add(forPrograms("profile", camera.row.profile))
      .add(forPrograms("profile_name", camera.row.profile_name));
}

std::string changeOutput(const std::string &what, Fields members, const Camera &camera, bool json) {
  if (!json) return what + ": " + cameraText(camera) + "\n";
  addCameraMembers(members, camera);
  return recordOutput(members, json);
}

}  // namespace usbdevctl
