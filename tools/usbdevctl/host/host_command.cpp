// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/devices.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "channel/channels.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "host/host_info.h"
#include "output/fields.h"
#include "output/numbers.h"
#include "output/output.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

ExitStatus model(const CameraOptions &options) {
  const bool found = vl_find_HOS_model_pic() == 0;
  print(recordOutput(Fields().add(answerField("picture", found)), options.json));
  return found ? ExitStatus::ok : ExitStatus::nothing;
}

ExitStatus codec(const CameraOptions &options) {
  int supported = 0;
  if (vl_check_HOS_halvane_support(&supported) != 0) {
    complain("the host does not report whether its graphics support the encoding add-on");
    return ExitStatus::failure;
  }
  print(recordOutput(Fields().add(answerField("supported", supported != 0)), options.json));
  return supported != 0 ? ExitStatus::ok : ExitStatus::nothing;
}

ExitStatus port(const CameraOptions &options) {
  std::string port;
  const ExitStatus found = findPort(options.camera.name(), port);
  if (found != ExitStatus::ok) return found;
  const int number = vl_HOS_CLI_usbid(port.c_str());
  const Fields fields =
      Fields().add(portField(port)).add(headed("number", numberField("port", numberUnlessNone(number))));
  print(recordOutput(fields, options.json));
  if (number != -1) return ExitStatus::ok;
  complain("the host has no number for port " + printable(port));
  return ExitStatus::nothing;
}

Command &addProbe(Command &host, const char *name, const char *description, ExitStatus (*probe)(const CameraOptions &),
                  const std::shared_ptr<CameraOptions> &options) {
  Command &command = host.addCommand(name, description, [probe, options] { return probe(*options); });
  addJsonFlag(command, options->json);
  return command;
}

}  // namespace

void addHost(Command &program) {
  auto options = std::make_shared<CameraOptions>(CameraName::By::channel);
  Command &host = program.addCommand("host", "Ask the host about itself");
  addHostInfo(host);
  addProbe(host, "model", "Check whether the host has a picture of its model", model, options);
  addProbe(host, "codec", "Check whether the host's graphics support the encoding add-on", codec, options);
  addCamera(addProbe(host, "port", "Show a port's number on the host's panel", port, options), options->camera);
}

}  // namespace usbdevctl
