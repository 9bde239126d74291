// What the host's tools print about a camera, for diagnoses alone: whatever they say, the library is asked.
#pragma once

#include <string>

namespace usbdevctl {

/// What a shell command prints, cut at a megabyte.
std::string outputOf(const std::string &command);

/// The format listing that the library reads of /dev/videoN.
std::string formatListing(int node);

}  // namespace usbdevctl
