// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the public headers state about each function, in their own words.
#pragma once

#include <map>
#include <set>
#include <string>

namespace torture {

/// The comment of each function and the heading that it stands under, as one line of text.
struct Words {
  std::string heading;
  std::string comment;
};

/// Of all public headers.
std::map<std::string, Words> functionWords();

/// The names in what <usbdev/usbdev.h> states between these two texts.
std::set<std::string> namesBetween(const std::string &begin, const std::string &end);

/// Does the function take the lock? Its own comment counts more than the heading.
bool takesLock(const Words &words);

}  // namespace torture
