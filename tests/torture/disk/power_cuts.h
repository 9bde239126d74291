// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Every state in which a power cut may leave a disk, from a recording of what was done to it.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "recording.h"

namespace torture {

/// How what was not flushed may reach the disk. Of the data, any blocks may; a file may have its new length without
/// them, and then has zeros there. Of the names, in the weakest order that POSIX allows any change may, in another
/// order, and only a flush of the folder secures them; in the order of a journal, such as ext4's, they do in the order
/// of the calls, and a flush of anything secures all before it.
enum class Order { weakest, journal };

/// Blocks of this size reach the disk whole; with the other value, whole calls do.
constexpr std::size_t kSector = 512;
constexpr std::size_t kWholeCalls = 0;

/// The content of each path; a folder's path ends with a slash.
using Files = std::map<std::string, std::string>;

/// What a cut left, and what had been recorded before it.
struct Cut {
  Files files;
  std::size_t operations;           // the cut came after so many
  std::vector<std::string> stored;  // what had been reported as stored by then
};

/// Judges each different cut once, and returns how many there are: cuts after which the files and what was stored are
/// equal are one.
int forEachCut(const recording::Recording &recording, Order order, std::size_t block,
               const std::function<void(const Cut &)> &judge);

/// Reports how many cuts there are in the weakest order, and how many of them a journal's order allows.
void reportCuts(const std::string &during, const recording::Recording &recording, std::size_t block, int weakest);

/// What would have been recorded if nobody had flushed the file or folder.
recording::Recording withoutFlushOf(const std::string &path, recording::Recording recording);

/// The files after so many operations, all of them on the disk.
Files filesAfter(const recording::Recording &recording, std::size_t operations);

/// Makes the files anew; the folder contains nothing else afterwards.
void materialise(const std::string &folder, const Files &files);

}  // namespace torture
