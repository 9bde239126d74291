// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hotplug.h>
#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus volume(const CameraOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  if (mn_set_usbdev_volume(profile) != 0) {
    return refused("profile " + std::to_string(profile) + " has no sound card whose volume could be set");
  }
  Camera camera;
  const ExitStatus read_again = findCameraOf(profile, camera);
  if (read_again != ExitStatus::ok) return read_again;
  _profile_info stored;
  if (vl_get_profile_info(profile, &stored) != 0) return configurationUnreadable();
  const Fields members = Fields().add(forPrograms("volume", stored.volume));
  print(changeOutput("volume set to " + std::to_string(stored.volume), members, camera, options.json));
  return ExitStatus::ok;
}

}  // namespace

void addVolume(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::profile);
  Command &command = program.addCommand("volume", "Apply a profile's stored volume to its sound card",
                                        [options] { return volume(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
