// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Whether a channel's links followed a change on the disk: the library does not report one that it could not make or
// remove.
#pragma once

#include <string>

#include "command_line/exit_status.h"

namespace usbdevctl {

/// The stored names of the links to a channel's stream; empty where there is none.
struct ChannelLinks {
  std::string live;
  std::string shared;
};

ChannelLinks linksOf(int channel);

/// Complains, and returns a failure, if a link that the channel has lost is still there, or one that it got is not.
ExitStatus linksFollowed(int channel, const ChannelLinks &before);

}  // namespace usbdevctl
