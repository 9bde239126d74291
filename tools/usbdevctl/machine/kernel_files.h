// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The small files in which the kernel and the host's services report about devices, each read up to a bound.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace usbdevctl {

class KernelFiles {
 public:
  /// All paths are below the root, which is empty for the machine itself.
  explicit KernelFiles(std::string root = "") : root_(std::move(root)) {}

  std::string path(const std::string &name) const { return root_ + name; }
  bool exists(const std::string &name) const;

  /// The first line, without blanks at its ends; empty for a file that cannot be read.
  std::string line(const std::string &name) const;
  /// The number on the first line; 0 if there is none.
  int number(const std::string &name, int base = 10) const;
  /// At most 64 KiB.
  std::string content(const std::string &name) const;

  /// The names in a folder, sorted; none for a folder that cannot be read.
  std::vector<std::string> names(const std::string &folder) const;

 private:
  std::string root_;
};

}  // namespace usbdevctl
