// One device event, for operations that handle several with the host's answers asked once.
#pragma once

#include <usbdev/records.h>

#include "devices/host_answers.h"

namespace usbdev {

/// What the caller of mn_set_usbdev_hotplug passes; nothing is null, the slot is terminated.
struct HotplugArguments {
  _usbdev_des *device;
  int *profile;
  char *devname;
  int *vnode;
  _usbdev_conflict *conflict;
};

int handleHotplug(HostAnswers &host, const HotplugArguments &caller);

}  // namespace usbdev
