// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <usbdev/records.h>

#include <string>

namespace usbdevctl {

/// Where the host's web pages show the stream of a share link; empty for none.
std::string pageOf(const ShareLinkInfo &link);

}  // namespace usbdevctl
