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
#include "command_line/shared_arguments.h"
#include "explain/collision_query.h"
#include "explain/explanation.h"
#include "explain/reason_log.h"
#include "explain/support_query.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct ExplainOptions {
  CameraOptions camera{CameraName::By::channel};
  bool log = false;
};

/// A camera that the machine has, and no channel.
bool hasNoChannel(const CameraName &name, const ChannelRows &rows, const Machine &machine) {
  const std::vector<std::string> ports = portsWithoutChannel(rows, machine);
  return name.by == CameraName::By::port && std::find(ports.begin(), ports.end(), name.port) != ports.end();
}

ExitStatus logged(const ExplainOptions &options, const Camera &camera, const Reasons &of_machine) {
  if (!options.log || logReasons(camera, of_machine)) return ExitStatus::ok;
  return refused("the event log cannot be written");
}

ExitStatus explainWithoutChannel(const std::string &port, const Machine &machine, const ExplainOptions &options) {
  const Reasons reasons = withoutChannel(port, machine);
  Camera camera;
  camera.row.slot = port;
  camera.row.device = machine.usb().attribute(port, "product");
  print(options.camera.json ? explanationJson(camera, reasons).text()
                            : machineCameraText(port, machine) + "\n" + reasonsText(reasons));
  return logged(options, camera, reasons);
}

Reasons reasonsOf(const Camera &camera, const ChannelRows &rows, const Reasons &found) {
  const bool hidden = std::any_of(found.begin(), found.end(), hidesCamera);
  return explain(rows, camera.channel, readCollisions(rows, camera.channel),
                 hidden ? std::nullopt : whyUnsupported(camera.row), found);
}

/// The reasons of a camera among all: whether it is supported is the library's mark, because to ask every camera takes
/// long, and only for what it waits its collision is asked.
Reasons reasonsAmongAll(const Camera &camera, const ChannelRows &rows, const Machine &machine) {
  const std::optional<int> rival = camera.row.parked_behind;
  return explain(rows, camera.channel, rival ? readCollisions(rows, camera.channel, rival) : Collisions(),
                 camera.row.supported ? std::nullopt : whyUnsupported(camera.row),
                 machine.reasons(placeOf(camera.row)));
}

std::string everyExplanationText(const ChannelRows &rows, const Machine &machine) {
  std::string text;
  for (const Camera &camera : camerasOf(rows)) {
    text += explanationText(camera, reasonsAmongAll(camera, rows, machine));
  }
  for (const std::string &port : portsWithoutChannel(rows, machine)) {
    text += machineCameraText(port, machine) + "\n" + reasonsText(withoutChannel(port, machine));
  }
  return text;
}

Json busesJson(const std::vector<Bus> &buses) {
  Json list = Json::array();
  for (const Bus &bus : buses) {
    list.append(Json::object().set("bus", bus.number).set("speed", bus.speed).set("reserved", bus.reserved));
  }
  return list;
}

Json everyExplanationJson(ChannelRows rows, const Machine &machine) {
  addTroubles(rows, machine);
  const FieldRows shown = channelFields(rows);
  Json channels = Json::array();
  for (std::size_t channel = 0; channel < rows.size(); ++channel) {
    const bool is_free = rows[channel].state == ChannelState::free;
    const Camera camera = {static_cast<int>(channel), rows[channel]};
    const Reasons reasons = is_free ? Reasons() : reasonsAmongAll(camera, rows, machine);
    channels.append(channelExplanationJson(shown[channel], rows[channel].state, reasons));
  }
  return Json::document().set("channels", std::move(channels)).set("buses", busesJson(machine.usb().buses()));
}

ExitStatus explainEvery(const ChannelRows &rows, const Machine &machine, const ExplainOptions &options) {
  if (options.log) {
    complain("--log needs a camera");
    return ExitStatus::usage;
  }
  print(options.camera.json ? everyExplanationJson(rows, machine).text() : everyExplanationText(rows, machine));
  return ExitStatus::ok;
}

ExitStatus explain(const ExplainOptions &options) {
  ChannelRows rows;
  if (!readChannels(rows)) return configurationUnreadable();
  const Machine machine;
  if (!options.camera.camera.isGiven()) return explainEvery(rows, machine, options);
  const CameraName name = options.camera.camera.name();
  if (hasNoChannel(name, rows, machine)) return explainWithoutChannel(name.port, machine, options);
  Camera camera;
  const ExitStatus found = findCamera(name, rows, camera);
  if (found != ExitStatus::ok) return found;
  const Reasons of_machine = machine.reasons(placeOf(camera.row));
  const Reasons reasons = reasonsOf(camera, rows, of_machine);
  print(options.camera.json ? explanationJson(camera, reasons).text() : explanationText(camera, reasons));
  return logged(options, camera, of_machine);
}

}  // namespace

void addExplain(Command &program) {
  auto options = std::make_shared<ExplainOptions>();
  Command &command =
      program.addCommand("explain", "Show why a camera, or each of them, does not stream, and what would change that",
                         [options] { return explain(*options); });
  addCamera(command, options->camera.camera).require(false);
  addJsonFlag(command, options->camera.json);
  command.add("--log", &options->log, "Also write what the machine has against the camera to the event log");
}

}  // namespace usbdevctl
