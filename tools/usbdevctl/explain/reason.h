// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// One thing that keeps a camera from streaming, and what would change it.
#pragma once

#include <string>

#include "explain/collision.h"

namespace usbdevctl {

struct Reason {
  const char *word;
  std::string why;
  std::string remedy;
  int other = -1;  // the channel that is in the way
  Collision collision = Collision::none;
};

}  // namespace usbdevctl
