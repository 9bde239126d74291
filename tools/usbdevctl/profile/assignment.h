// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Whether a camera can get a profile: the library assigns any, even to one that will not stream and one that makes
// a streaming camera wait.
#pragma once

#include <optional>
#include <string>

#include "explain/collision.h"
#include "output/json.h"

namespace usbdevctl {

enum class Verdict {
  free,   // nothing is against it
  bound,  // the camera has just this profile
  // The library cannot do it.
  away,           // the camera is not attached
  port_kept,      // the library finds a channel first that keeps the port of a displaced camera
  profile_taken,  // another channel has the profile
  camera_taken,   // the camera has another profile
  // The library does it, and the profile does not stream, or another one stops.
  unsupported,
  waits,
  stops_another,
};

struct Assignment {
  Verdict verdict = Verdict::free;
  int channel = -1;
  int profile = -1;
  int other = -1;  // the channel that is in the way
  Collision collision = Collision::none;
};

/// Judges by what the channels are, and by what the camera of this channel collides with each of them over.
Assignment judgeAssignment(const ChannelRows &rows, int channel, int profile, const Collisions &collisions);

/// Whether the library does it.
bool isPossible(const Assignment &assignment);

/// Whether it is done without being asked for twice.
bool isHarmless(const Assignment &assignment);

/// Why not, as one sentence; empty where nothing is against it.
std::string refusalText(const Assignment &assignment, const ChannelRows &rows);

/// Its name for programs; empty where nothing is against it.
std::string reasonWord(const Assignment &assignment);

/// What a user can do about it; empty where nothing is against it.
std::string adviceText(const Assignment &assignment, const ChannelRows &rows);

/// The members "reason", "other_channel", "collision", "why" and "advice", which are null where they do not
/// apply.
Fields assignmentMembers(const Assignment &assignment, const ChannelRows &rows);

}  // namespace usbdevctl
