// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The file itself: its bytes, the exclusion of other writers, and its replacement by a new one.
#pragma once

#include <unistd.h>

#include <string>
#include <vector>

namespace xmlcfg {

/// Owns a file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  Descriptor(Descriptor &&other) noexcept : descriptor_(other.release()) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    if (this != &other) {
      if (descriptor_ >= 0) close(descriptor_);
      descriptor_ = other.release();
    }
    return *this;
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }
  int release() {
    int released = descriptor_;
    descriptor_ = -1;
    return released;
  }

 private:
  int descriptor_;
};

/// A name in a folder, which stays the same folder when it is renamed or another one takes its path.
struct Place {
  Descriptor folder;
  std::string name;
};

// All of these return a result of results.h; the bytes are set only with kDone.

int openForReading(const std::string &path, Descriptor &file);

/// Opens the file, waits for its lock, and keeps the lock until the descriptor is closed; creates a missing file with
/// the given content, readable only for its owner. `place` is the one of the file itself, after all links. Readers need
/// no lock, because they see the file before or after a replacement, never in between.
int openForWriting(const std::string &path, const std::string &first_content, Descriptor &file, Place &place);

int readAll(const Descriptor &file, std::vector<char> &bytes);

/// Replaces the file at the place, whose lock the caller has, atomically and durably. The new file has the same owner,
/// group and their permissions; other users can no longer read it. With kNotStored the file is as it was, and no other
/// file is left.
int replace(const Place &place, const Descriptor &old_file, const std::string &content);

}  // namespace xmlcfg
