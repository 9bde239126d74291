// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Where a USB device sits and whether the host knows it.
#pragma once

#include <cstddef>

#include "core/config.h"
#include "devices/device_walk.h"

namespace usbdev {

constexpr std::size_t kBridgePathSize = 256;

inline constexpr char kNoSupportList[] = "/etc/config/.usbnosupportlist.dat";

/// Finds vendor and product of the camera in a port, as in "046d:0825"; a part that was not found is empty. False when
/// neither was found.
bool findProductIds(int vnode, const char *usbslot, char (&pidvid)[kShortCodeSize]);

/// Looks up the front-end type of the camera in a port; false when the host lists none.
bool findCameraType(int vnode, const char *usbslot, char (&fetype)[kShortCodeSize]);

bool isBehindPciBridge(int vnode);

/// Finds the path of the controller that carries a video node; false when that is not a USB controller.
bool findPciBridge(int vnode, char (&path)[kBridgePathSize]);

/// Was a port last switched on? The stored state of the first channel that has one for it, else 1.
int storedSwitch(const OpenConfig &config, const char *usbslot);

/// Does a list file name a device? The no-support list names whole products, any other list parts of their names.
bool isListed(const char *devname, const char *listfile);

}  // namespace usbdev
