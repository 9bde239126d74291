// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the program holds of the machine at one moment.
#pragma once

#include <string>
#include <vector>

namespace soak {

struct Resources {
  static Resources now();

  long memory_kb;  // resident
  size_t descriptors;
  size_t threads;
  size_t segments;                 // of shared memory, attached
  bool children;                   // ended or not
  std::vector<std::string> files;  // below /etc, /run and /var/log
};

}  // namespace soak
