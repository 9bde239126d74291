// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/channel_query.h"
#include "channel/configuration.h"
#include "channel/troubles.h"
#include "command_line/commands.h"
#include "explain/collision_query.h"
#include "explain/explanation.h"
#include "explain/support_query.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

/// A camera that the machine has, and no channel.
bool hasNoChannel(const CameraName &name, const ChannelRows &rows, const Machine &machine) {
  const std::vector<std::string> ports = portsWithoutChannel(rows, machine);
  return name.by == CameraName::By::port && std::find(ports.begin(), ports.end(), name.port) != ports.end();
}

ExitStatus explainWithoutChannel(const std::string &port, const Machine &machine, bool json) {
  const Reasons reasons = withoutChannel(port, machine);
  Camera camera;
  camera.row.slot = port;
  camera.row.device = machine.usb().attribute(port, "product");
  print(json ? explanationJson(camera, reasons).text()
             : machineCameraText(port, machine) + "\n" + reasonsText(reasons));
  return ExitStatus::ok;
}

Reasons reasonsOf(const Camera &camera, const ChannelRows &rows, const Machine &machine) {
  const Reasons found = machine.reasons(placeOf(camera.row));
  const bool hidden = std::any_of(found.begin(), found.end(), hidesCamera);
  return explain(rows, camera.channel, readCollisions(rows, camera.channel),
                 hidden ? std::nullopt : whyUnsupported(camera.row), found);
}

ExitStatus explain(const CameraOptions &options) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const Machine machine;
  const CameraName name = options.camera.name();
  if (hasNoChannel(name, rows, machine)) return explainWithoutChannel(name.port, machine, options.json);
  Camera camera;
  const ExitStatus found = findCamera(name, rows, camera);
  if (found != ExitStatus::ok) return found;
  const Reasons reasons = reasonsOf(camera, rows, machine);
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
