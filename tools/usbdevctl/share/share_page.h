#pragma once

#include <usbdev/records.h>

#include <string>

namespace usbdevctl {

/// Where the host's web pages show the stream of a share link; empty for none.
std::string pageOf(const ShareLinkInfo &link);

}  // namespace usbdevctl
