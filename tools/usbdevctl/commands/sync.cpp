#include <usbdev/hotplug.h>

#include "commands/commands.h"
#include "output/output.h"

namespace usbdevctl {

namespace {

ExitStatus sync() {
  // The application's start-up sequence: the codec check, then the synchronisation, whose result tells.
  check_halvane();
  if (mn_sync_usbdev_conf() == 1) return ExitStatus::ok;
  complain("the channel configuration cannot be read");
  return ExitStatus::failure;
}

}  // namespace

void addSync(Command &program) {
  program.addCommand("sync", "Bring the channels into line with the devices that are attached, as at start-up", sync);
}

}  // namespace usbdevctl
