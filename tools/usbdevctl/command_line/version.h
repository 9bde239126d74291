// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The versions of the program and of the library that it runs with.
#pragma once

#include <string>

namespace usbdevctl {

std::string programVersion();

/// The file that the library was loaded from, all links resolved; it is named after the library's version.
std::string libraryFile();

/// A line for each.
std::string versionText();

}  // namespace usbdevctl
