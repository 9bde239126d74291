// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What programs do to a disk, as a list: the calls that change files, and those that flush them.
#pragma once

#include <sys/types.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace recording {

enum class Kind : int { file, folder, data, length, rename, remove, flush, stored };

struct Operation {
  Kind kind;
  ino_t inode = 0;     // of the file or folder
  off_t offset = 0;    // of data; the length of a shortened file
  std::string path{};  // the name that is given or removed, the folder that is flushed
  std::string from{};  // the name before
  std::string data{};  // or what was stored
};

/// The names on a disk, and the contents that they lead to. A folder has no content.
struct Disk {
  std::map<std::string, ino_t> names;
  std::map<ino_t, std::string> contents;
};

struct Recording {
  std::string mount_point;
  Disk before;
  std::vector<Operation> operations;
};

/// Records from here on what this process, and the children that it starts, do on the disk that is mounted there.
void begin(const std::string &mount_point);
Recording end();

/// Adds that something was reported as stored.
void noteStored(const std::string &what);

/// Asked and told by the functions that stand in for the C library's.
bool concerns(int descriptor);
void add(const Operation &operation);

}  // namespace recording
