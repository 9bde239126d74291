// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "stream/stream_command.h"

#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "output/output.h"
#include "stream/stream_settings.h"

namespace usbdevctl {

namespace {

ExitStatus explainLack(int profile) {
  Camera camera;
  const ExitStatus found = findCameraOf(profile, camera);
  if (found != ExitStatus::ok) return found;
  const std::string lack = streamLackText(camera.row);
  if (lack.empty()) return configurationUnreadable();
  complain(cameraText(camera) + ": " + lack);
  return ExitStatus::nothing;
}

ExitStatus show(const CameraOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  _streaminfo record;
  const ExitStatus status = readStream(profile, record);
  if (status == ExitStatus::ok) print(recordOutput(streamFields(record), options.json));
  return status;
}

void addShow(Command &stream) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::profile);
  Command &command =
      stream.addCommand("show", "Show a profile's stream settings", [options] { return show(*options); });
  addCameraOptions(command, *options);
}

}  // namespace

ExitStatus readStream(int profile, _streaminfo &record) {
  record = {};
  return vl_get_stream_info(profile, &record) == 0 ? ExitStatus::ok : explainLack(profile);
}

void addStream(Command &program) {
  Command &stream = program.addCommand("stream", "Show or change the stream settings of a profile");
  addShow(stream);
  addStreamSet(stream);
}

}  // namespace usbdevctl
