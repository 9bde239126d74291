// The links below the application's folder that lead to a profile's live stream.
#pragma once

#include <cstddef>

namespace usbdev {

constexpr std::size_t kLinkNameSize = 64;

/// Links a profile's stream directory under a name; an empty name makes no link.
void makeStreamLink(int profile, const char *name);

/// Removes the link of that name where there is one, also when it leads nowhere.
void removeStreamLink(const char *name);

}  // namespace usbdev
