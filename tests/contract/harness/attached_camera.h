// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera in a port of the host, as its tools and its configuration describe it; and what belongs to its links.
#pragma once

#include <string>

#include "host.h"

namespace contract {

// A camera as the host's tools describe it: known vendor and product, MJPEG.
HostCamera plugged(Host &host, const std::string &slot, int node);

// The same on a channel, its slot switched on.
HostChannel cameraOn(Host &host, int channel, const std::string &slot, int node, int profile = -1);

// A link below the application's folder.
void linkOnDisk(Host &host, const std::string &name);

// Answers for the commands that make a link's name.
void makeIdentifiers(Host &host);

}  // namespace contract
