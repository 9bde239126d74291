// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// An open configuration of plain values: what the library reads from it, and what it has set.
#pragma once

#include <map>
#include <string>

#include "core/config.h"

namespace usbdev {

/// By path, as "ch3/exists" or "ch3/video/vnode".
using PlainConfig = std::map<std::string, std::string>;

inline OpenConfig opened(PlainConfig &config) { return OpenConfig(&config); }

}  // namespace usbdev
