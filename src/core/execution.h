// Programs that the host runs for the library, without a shell.
#pragma once

namespace usbdev {

/// Makes a symbolic link, replacing one that is there.
int makeLink(const char *target, const char *link);

/// Removes a link or whatever else stands at the path.
int removePath(const char *path);

}  // namespace usbdev
