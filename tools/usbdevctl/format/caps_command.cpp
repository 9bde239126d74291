// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "format/capabilities.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

Capabilities readCapabilities(int profile) {
  Capabilities capabilities;
  capabilities.camera.count = vl_get_usbchn_cap(profile, capabilities.camera.formats.data());
  char stored[16] = {};
  if (vl_get_profile_video_cap(profile, stored) == 0) capabilities.video = stored;
  if (vl_get_usbchn_audio_cap(profile, stored) == 0) capabilities.audio = stored;
  return capabilities;
}

ExitStatus caps(const CameraOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  const Capabilities capabilities = readCapabilities(profile);
  const std::string name = "profile " + std::to_string(profile);
  if (!capabilities.video && !capabilities.audio) {
    Cameras cameras;
    const ExitStatus read_again = readCameras(cameras);
    if (read_again != ExitStatus::ok) return read_again;
    for (const Camera &camera : namedCameras(cameras, {CameraName::By::profile, profile, ""})) {
      if (streamLackText(camera.row).empty()) return configurationUnreadable();
    }
    return nothingApplies("no device is attached for " + name + " in a port that is switched on");
  }
  if (!capabilities.audio && capabilities.camera.count < 0) {
    return refused("the camera of " + name + " could not be asked for its formats");
  }
  print(options.json ? capabilitiesJson(capabilities).text() : capabilitiesText(capabilities, outputTakesColour()));
  if (capabilities.audio || capabilities.camera.count > 0) return ExitStatus::ok;
  return nothingApplies("the camera of " + name + " offers no format that can be used");
}

}  // namespace

void addCaps(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::profile);
  Command &command =
      program.addCommand("caps", "Show what the device of a profile can deliver", [options] { return caps(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
