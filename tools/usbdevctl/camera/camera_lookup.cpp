// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "camera/camera_lookup.h"

#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

using By = CameraName::By;

void complainWithChoice(const std::string &what, const Cameras &cameras) {
  if (cameras.empty()) return complain(what + "; no channel has a camera");
  complain(what + "; there are:");
  for (const Camera &camera : cameras) complain("  " + cameraText(camera));
}

ExitStatus lacks(const Camera &camera, const char *what) {
  complain(std::string("this needs a ") + what + ": " + cameraText(camera));
  return ExitStatus::nothing;
}

}  // namespace

ExitStatus readCameras(Cameras &cameras) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  cameras = camerasOf(rows);
  return ExitStatus::ok;
}

ExitStatus findCamera(const CameraName &name, Camera &camera) {
  ChannelRows rows;
  return readChannels(rows) ? findCamera(name, rows, camera) : configurationUnreadable();
}

ExitStatus findCamera(const CameraName &name, const ChannelRows &rows, Camera &camera) {
  const Cameras cameras = camerasOf(rows);
  const Cameras named = namedCameras(cameras, name);
  if (named.size() == 1) {
    camera = named.front();
    return ExitStatus::ok;
  }
  if (named.empty()) {
    complainWithChoice(nameText(name) + " has no camera", cameras);
    return ExitStatus::nothing;
  }
  complainWithChoice(nameText(name) + " names more than one camera", named);
  return ExitStatus::failure;
}

ExitStatus findCameraOf(int profile, Camera &camera) { return findCamera({By::profile, profile, ""}, camera); }

ExitStatus readAgain(Camera &camera) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  camera.row = rows[static_cast<std::size_t>(camera.channel)];
  return ExitStatus::ok;
}

ExitStatus findProfile(const CameraName &name, int &profile) {
  profile = name.number;
  if (name.by == By::profile) return ExitStatus::ok;
  Camera camera;
  const ExitStatus status = findCamera(name, camera);
  if (status != ExitStatus::ok) return status;
  if (!camera.row.profile) return lacks(camera, "profile");
  profile = *camera.row.profile;
  return ExitStatus::ok;
}

ExitStatus findPort(const CameraName &name, std::string &port) {
  port = name.port;
  if (name.by == By::port) return ExitStatus::ok;
  Camera camera;
  const ExitStatus status = findCamera(name, camera);
  port = camera.row.slot;
  return status;
}

ExitStatus findVideoNode(const CameraName &name, int &node) {
  node = name.number;
  if (name.by == By::video_node) return ExitStatus::ok;
  Camera camera;
  const ExitStatus status = findCamera(name, camera);
  if (status != ExitStatus::ok) return status;
  if (!camera.row.video_node) return lacks(camera, "video node");
  node = *camera.row.video_node;
  return ExitStatus::ok;
}

ExitStatus notStoredFor(const Camera &camera) {
  complain("it could not be stored: " + cameraText(camera));
  return ExitStatus::failure;
}

ExitStatus refusedFor(int profile) {
  Camera camera;
  return findCameraOf(profile, camera) == ExitStatus::ok ? notStoredFor(camera) : ExitStatus::failure;
}

}  // namespace usbdevctl
