// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What can happen to the disk that a configuration file is on, while the file is written.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace torture {

/// The disk, its file, and what others have on it.
extern const std::string kDisk;
extern const std::string kFolder;
extern const std::string kFile;
extern const std::string kOthersFile;
extern const char kOthersText[];           // not a configuration
extern const char kOthersConfiguration[];  // stands where a change puts another file into the place of ours

struct DiskChange {
  const char *name;
  std::function<void()> make;
  bool displaces_file = false;    // the file is no longer in its folder
  bool protects_folder = false;   // nobody can remove a file from it
  std::string put_into_folder{};  // a name that the change adds
};

/// A small disk in memory, with a file of others.
void insertDisk();
/// Makes it whole again and takes it out, if it is still in.
void repairDisk();
void removeDisk();

std::vector<DiskChange> diskChanges();

}  // namespace torture
