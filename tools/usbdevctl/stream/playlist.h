// The playlist of a live stream: its encoder writes it anew with every segment.
#pragma once

#include <ctime>
#include <optional>
#include <string>

#include "output/fields.h"

namespace usbdevctl {

/// Where a profile's playlist is published.
std::string playlistOf(int profile);

/// Whether the playlist was written at most three segments ago; nothing when there is none to look at. One that does
/// not say how long its segments are is not a live one.
std::optional<bool> playlistGrows(const std::string &path, std::time_t now);

/// Adds what there is to say of a profile's playlist.
void addPlaylist(Fields &fields, bool exists, std::optional<bool> grows);

}  // namespace usbdevctl
