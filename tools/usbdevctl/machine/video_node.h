// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A camera's video node: whether it can be opened, whether it has pictures, and who uses it.
#pragma once

#include <string>
#include <vector>

#include "machine/kernel_files.h"

namespace usbdevctl {

struct NodeState {
  bool exists = false;
  bool is_device = false;  // and no file, as on a simulated host
  int open_error = 0;      // as in errno
  bool captures = true;
  bool busy = false;
};

/// Asks the node itself. Whether it is busy is asked only if the host does not stream from it, so that no stream that
/// is just beginning finds it busy. Opening a camera wakes it, but does not start it.
NodeState askNode(const std::string &path, bool may_be_busy);

struct NodeHolders {
  std::vector<std::string> programs;  // "motion (process 4711)", printable
  bool all_seen = true;               // without enough rights, those of other users are not seen
};

/// The programs that have the node open, except this one and the host's own streams.
NodeHolders holdersOf(const KernelFiles &files, const std::string &node);

}  // namespace usbdevctl
