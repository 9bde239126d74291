#include <usbdev/hotplug.h>

#include "commands/commands.h"
#include "commands/configuration.h"

namespace usbdevctl {

namespace {

ExitStatus sync() {
  // The application's start-up sequence: the codec check, then the synchronisation, whose result tells.
  check_halvane();
  return mn_sync_usbdev_conf() == 1 ? ExitStatus::ok : configurationUnreadable();
}

}  // namespace

void addSync(Command &program) {
  program.addCommand("sync", "Bring the channels into line with the devices that are attached, as at start-up", sync);
}

}  // namespace usbdevctl
