// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Programs that the host runs for the library, without a shell.
#pragma once

namespace usbdev {

/// Makes a symbolic link, replacing one that is there.
int makeLink(const char *target, const char *link);

/// Removes what is at the path, a link or anything else.
int removePath(const char *path);

}  // namespace usbdev
