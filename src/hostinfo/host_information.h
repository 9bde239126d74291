// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the pages show about the host and its packages.
#pragma once

#include <usbdev/records.h>

#include "core/host_queries.h"

namespace usbdev {

/// The TCP port of the host's web pages; unchanged if the host does not set one.
HostSetting readWebPort(int &port);

HostSetting readHostVersion(TextBuffer version);

/// Fills the record with what the package registry knows; a text that it does not know stays as it is.
void readPackage(const char *package, BndlInfo &info);

}  // namespace usbdev
