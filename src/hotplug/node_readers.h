// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// From a USB interface or port to the kernel's node and the device's name.
#pragma once

#include <usbdev/records.h>

#include "core/text.h"

namespace usbdev {

/// What asking an interface for its node came to. Outputs are set only when the node is found, but for the node of a
/// camera whose name is unreadable.
enum class NodeAnswer { found, missing, unreadable };

/// Finds the camera of an interface such as "3-1.2:1.0".
NodeAnswer readCamera(const char *interface_name, int &vnode, TextBuffer name);

/// Finds the sound card of an interface; its name is set where the host knows the card.
NodeAnswer readSoundCard(const char *interface_name, int &card, TextBuffer name);

/// Finds the camera in a record's port, at its interfaces 0 and 2; if both have one, the second counts.
void readCameraInPort(_usbdev_update &record);

/// Finds the sound card in a record's port in the same way.
void readSoundCardInPort(_usbdev_update &record);

}  // namespace usbdev
