// What the channels may do on a host that cannot encode (any more).
#pragma once

#include "devices/host_answers.h"

namespace usbdev {

/// check_halvane with answers that the calling operation may already have.
int checkCodecs(HostAnswers &host);

}  // namespace usbdev
