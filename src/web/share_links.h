// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The share links of the profiles. Each function works on the profile that the record names.
#pragma once

#include <usbdev/records.h>

namespace usbdev {

/// Stores the settings of a record and makes or removes the symbolic link; a link with the same password stays. The
/// record's share id is set once it has been read, its token and link name when a new link is stored.
bool setShareLink(ShareLinkInfo &info);

/// Fills a record with what is stored.
bool readShareLink(ShareLinkInfo &info);

/// Gives a share link new identifiers and sets them in the record. The old symbolic link is removed even if that fails.
bool renewShareLink(ShareLinkInfo &info);

/// Removes the symbolic link of the share link that a section of the channel file stores.
bool removeStoredLink(const char *section);

}  // namespace usbdev
