// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/profiles.h>

#include <memory>

#include "camera/camera_argument.h"
#include "camera/camera_lookup.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "events/event_codes.h"
#include "output/output.h"
#include "output/printable.h"

namespace usbdevctl {

namespace {

constexpr std::size_t kLongestName = sizeof(_usbdev_entry::profilename) - 1;

struct RenameOptions {
  CameraArgument camera{CameraName::By::profile};
  std::string name;
  bool json = false;
};

ExitStatus rename(const RenameOptions &options) {
  int profile = 0;
  const ExitStatus found = findProfile(options.camera.name(), profile);
  if (found != ExitStatus::ok) return found;
  if (vl_set_profile_channelname(profile, options.name.c_str(), kLogChangesOnly) != 0) return refusedFor(profile);
  Camera camera;
  const ExitStatus read_again = findCameraOf(profile, camera);
  if (read_again != ExitStatus::ok) return read_again;
  const std::string &name = camera.row.profile_name;
  if (name != options.name.substr(0, kLongestName)) return notStoredFor(camera);
  print(changeOutput("profile " + std::to_string(profile) + " renamed to \"" + printable(name) + '"', {}, camera,
                     options.json));
  return ExitStatus::ok;
}

}  // namespace

void addRename(Command &program) {
  auto options = std::make_shared<RenameOptions>();
  Command &command =
      program.addCommand("rename", "Give a profile a display name", [options] { return rename(*options); });
  addCamera(command, options->camera);
  command.add("name", &options->name, "Name, cut at 255 bytes");
  addJsonFlag(command, options->json);
}

}  // namespace usbdevctl
