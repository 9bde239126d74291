// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What keeps two cameras from streaming at the same time.
#pragma once

#include <usbdev/records.h>

#include <array>
#include <string>

#include "camera/camera.h"

namespace usbdevctl {

enum class Collision {
  none,
  root_port,   // both are on one root port, and only that matters
  controller,  // both are on one controller behind a PCI bridge
  host,        // the host is limited to one channel
};

/// Why a camera collides with the camera of each channel.
using Collisions = std::array<Collision, USBDEV_CHANNELS>;

/// The part of a port's name before its first ".".
std::string rootPort(const std::string &port);

/// "both are on root port 3-1"
std::string collisionText(Collision collision, const std::string &port);

/// "root_port", "controller", "host"; empty for none.
std::string collisionWord(Collision collision);

/// The channel whose streaming camera conflicts with the camera of this channel; -1 if there is none.
int streamingRival(const ChannelRows &rows, int channel, const Collisions &collisions);

/// How to get a camera that collides with the one of another channel to stream.
std::string rivalRemedy(const ChannelRows &rows, int other, Collision collision);

/// The channels as they are after this one got the profile: the cameras that collide with it wait for it.
ChannelRows afterAssignment(ChannelRows rows, int channel, int profile, const Collisions &collisions);

/// The cameras that wait for the channel now and did not before.
Cameras waitingSince(const ChannelRows &before, const ChannelRows &now, int channel);

}  // namespace usbdevctl
