// The formats that a camera offers.
#pragma once

#include <usbdev/records.h>

#include "devices/host_answers.h"

namespace usbdev {

/// mn_get_usbchn_fmts with answers that the calling operation may already have.
int listFormats(HostAnswers &host, int vnode, _usbfmt_des *table, int *over60);

}  // namespace usbdev
