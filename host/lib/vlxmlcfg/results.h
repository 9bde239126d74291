// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the functions of the XML configuration interface return. A negative result of a close: nothing was stored.
#pragma once

#include <cstddef>

namespace xmlcfg {

constexpr int kOpened = 1;
constexpr int kDone = 0;
constexpr int kNotFlushed = 1;  // of a close: stored, but after a power cut the old file may be back

constexpr int kBadArgument = -1;  // a null pointer, an unknown mode, a name that XML cannot contain
constexpr int kMissing = -2;      // no such file; for a write open: no such folder either
constexpr int kUnreadable = -3;   // no permission, not a plain file, an input error
constexpr int kDamaged = -4;      // not one complete XML element, deeper than a sub-key, or larger than kLargestFile
constexpr int kNotWritable = -5;  // a write open that may not write, or cannot create the missing file
constexpr int kReadOnly = -6;     // a value set on a handle that was opened for reading
constexpr int kNotStored = -7;    // the close could not replace the file, which is as it was
constexpr int kNoMemory = -8;     // memory ran out; a close that follows such a set stores nothing

constexpr std::size_t kLargestFile = 1 << 20;  // about fifty times what ten channels need

}  // namespace xmlcfg
