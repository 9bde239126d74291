// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <usbdev/hotplug.h>

#include <algorithm>
#include <memory>

#include "camera/camera_lookup.h"
#include "channel/configuration.h"
#include "channel/hotplug_lock.h"
#include "command_line/commands.h"
#include "command_line/shared_arguments.h"
#include "output/fields.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

/// The application's start-up sequence: the codec check, then the synchronisation, whose result is the answer.
ExitStatus synchronise() {
  const HotplugLock lock(kHotplugLockFile);
  if (!lock.error().empty()) {
    complain(lock.error());
    return ExitStatus::failure;
  }
  check_halvane();
  return mn_sync_usbdev_conf() == 1 ? ExitStatus::ok : refused("the channels could not be stored");
}

ExitStatus sync(bool json) {
  const ExitStatus status = synchronise();
  if (status != ExitStatus::ok) return status;
  Cameras cameras;
  const ExitStatus read_again = readCameras(cameras);
  if (read_again != ExitStatus::ok) return read_again;
  const auto attached = static_cast<int>(std::count_if(cameras.begin(), cameras.end(), isAttached));
  const int away = static_cast<int>(cameras.size()) - attached;
  const std::string line = "after the synchronisation: " + std::to_string(attached) +
                           " channels with an attached device, " + std::to_string(away) +
                           " that keep the place of another\n";
  const Fields members = Fields().add(forPrograms("attached", attached)).add(forPrograms("away", away));
  print(json ? recordOutput(members, true) : line);
  return ExitStatus::ok;
}

}  // namespace

void addSync(Command &program) {
  auto json = std::make_shared<bool>(false);
  Command &command = program.addCommand("sync", "Update the channels from the attached devices, as at start-up",
                                        [json] { return sync(*json); });
  addJsonFlag(command, *json);
}

}  // namespace usbdevctl
