// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "events/event_codes.h"
#include "output/output.h"
#include "stream/channel_links.h"

namespace usbdevctl {

namespace {

ExitStatus clear(const CameraOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  Camera camera;
  if (findCameraOf(profile, camera) != ExitStatus::ok) return ExitStatus::failure;
  const ChannelLinks links = linksOf(camera.channel);
  if (vl_clear_usbchn_profile(profile, nullptr, kEventCleared) != 0) return refusedFor(profile);
  const ExitStatus read_again = readAgain(camera);
  if (read_again != ExitStatus::ok) return read_again;
  if (camera.row.profile == profile) return notStoredFor(camera);
  const Fields members = Fields().add(forPrograms("cleared", profile));
  print(changeOutput("profile " + std::to_string(profile) + " cleared", members, camera, options.json));
  return linksFollowed(camera.channel, links);
}

}  // namespace

void addClear(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::profile);
  Command &command = program.addCommand("clear", "Take its profile from a camera and remove the profile's links",
                                        [options] { return clear(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
