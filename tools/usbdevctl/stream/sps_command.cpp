// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hotplug.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

struct SpsOptions {
  CameraArgument camera{CameraName::By::profile};
  int value = 0;
  bool json = false;
};

ExitStatus sps(const SpsOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  if (mn_set_usbchn_sps(profile, options.value) != 0) return refusedFor(profile);
  Camera camera;
  const ExitStatus read_again = findCameraOf(profile, camera);
  if (read_again != ExitStatus::ok) return read_again;
  const Fields members = Fields().add(forPrograms("sps_state", options.value));
  print(changeOutput("stream-parameter state " + std::to_string(options.value) + " recorded", members, camera,
                     options.json));
  return ExitStatus::ok;
}

}  // namespace

void addSps(Command &program) {
  auto options = std::make_shared<SpsOptions>();
  Command &command =
      program.addCommand("sps", "Store a profile's stream-parameter state", [options] { return sps(*options); });
  addCamera(command, options->camera);
  command.add("value", &options->value, "The state's flag");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
