// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "command_line/commands.h"
#include "explain/collision_query.h"
#include "explain/explanation.h"
#include "explain/support_query.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus explain(const CameraOptions &options) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  Camera camera;
  const ExitStatus found = findCamera(options.camera.name(), rows, camera);
  if (found != ExitStatus::ok) return found;
  const Reasons reasons =
      explain(rows, camera.channel, readCollisions(rows, camera.channel), whyUnsupported(camera.row));
  print(options.json ? explanationJson(camera, reasons).text() : explanationText(camera, reasons));
  return ExitStatus::ok;
}

}  // namespace

void addExplain(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::channel);
  Command &command = program.addCommand("explain", "Show why a camera does not stream, and what would change that",
                                        [options] { return explain(*options); });
  addCameraOptions(command, *options);
}

}  // namespace usbdevctl
