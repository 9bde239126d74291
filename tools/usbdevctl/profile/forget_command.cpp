// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "channel/hotplug_lock.h"
#include "command_line/commands.h"
#include "command_line/refusal.h"
#include "output/output.h"
#include "profile/channel_release.h"
#include "stream/channel_links.h"

namespace usbdevctl {

namespace {

ExitStatus forget(const CameraOptions &options) {
  const HotplugLock lock(kHotplugLockFile);  // so that no device is plugged in meanwhile
  if (!lock.error().empty()) return refuse({{lock.error(), kNotLocked}}, options.json);
  Camera camera;
  const ExitStatus found = findCamera(options.camera.name(), camera);
  if (found != ExitStatus::ok) return found;
  if (camera.row.state == ChannelState::plugged) {
    const std::string why = ": it is attached; only a camera that is away can be forgotten";
    return refuse({{cameraText(camera) + why, kAttached}}, options.json);
  }
  const ChannelLinks links = linksOf(camera.channel);
  std::string wrong;
  if (!releaseChannel(camera, wrong)) return refused(cameraText(camera) + ": " + wrong);
  print(changeOutput("forgotten", {}, camera, options.json));
  return linksFollowed(camera.channel, links);
}

}  // namespace

void addForget(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::channel);
  Command &command =
      program.addCommand("forget", "Free the channel, and the profile, of a camera that will not come back",
                         [options] { return forget(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
