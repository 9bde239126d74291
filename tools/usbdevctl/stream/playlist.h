// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The playlist of a live stream: its encoder writes it again with every segment.
#pragma once

#include <ctime>
#include <optional>
#include <string>

#include "output/fields.h"

namespace usbdevctl {

/// Where a profile's playlist is published.
std::string playlistOf(int profile);

/// Whether the playlist was written at most three segments ago; nothing when there is no playlist. One without
/// the length of its segments is not live.
std::optional<bool> playlistGrows(const std::string &path, std::time_t now);

/// Adds whether a profile has a playlist, and whether it grows.
void addPlaylist(Fields &fields, bool exists, std::optional<bool> grows);

}  // namespace usbdevctl
