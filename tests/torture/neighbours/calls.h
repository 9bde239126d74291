// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The calls of the library that meet its neighbours, by name.
#pragma once

#include <string>

namespace neighbours {

struct Answer {
  int result;
  std::string text = "";  // what the call filled in
};

/// A port, a path or another word is the argument; each call states which.
using Call = Answer (*)(const char *argument);

/// Returns null for an unknown name.
Call callNamed(const char *name);

/// Writes everything but printable ASCII, and the backslash, as \xHH.
std::string printable(const std::string &text);

}  // namespace neighbours
