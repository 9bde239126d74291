// May this host encode pictures in hardware?
#pragma once

namespace usbdev {

/// Whatever is missing means no.
bool mayEncode();

/// Is the driver of the host's GPU installed?
bool hasReadyGpu();

}  // namespace usbdev
