// What the channels may do on a host that cannot encode (any more).
#pragma once

#include "devices/host_answers.h"

namespace usbdev {

/// Where the host cannot encode, turns channels to MJPEG and marks those without it as unsupported; false when the file
/// cannot be opened or stored.
bool checkCodecs(HostAnswers &host);

}  // namespace usbdev
