// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A profile's live link: a symbolic link, named by a hash, to the folder of its stream's files.
#pragma once

#include <string>

#include "output/table.h"

namespace usbdevctl {

/// The folder of the links.
inline constexpr char kApplicationFolder[] = "/mnt/ext/opt/apps/Velmora2";

enum class LinkState {
  none,        // the profile has none
  missing,     // it is not on the disk
  nowhere,     // the link exists, its target does not
  unreadable,  // the system does not tell
  good,
};

struct LiveLink {
  LinkState state = LinkState::none;
  std::string path;
  std::string target;  // as stored in the link, whether or not it exists
};

/// Follows the link of this name, which is empty for a profile without one.
LiveLink followLink(const std::string &folder, const std::string &name);

std::string linkStateName(LinkState state);

/// The target, or what is wrong with the link.
Cell linkCell(const LiveLink &link);

}  // namespace usbdevctl
