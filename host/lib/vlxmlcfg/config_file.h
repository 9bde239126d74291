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

// All of these return a result of results.h; the bytes are set only with kDone.

int openForReading(const std::string &path, Descriptor &file);

/// Opens the file and holds its lock, waiting for another writer, until the descriptor is closed; creates a missing
/// file with the content given, for its owner alone. The real path, links resolved, is the one to replace. Readers need
/// no lock, since they see the file before or after a replacement and never between.
int openForWriting(const std::string &path, const std::string &first_content, Descriptor &file, std::string &real_path);

int readAll(const Descriptor &file, std::vector<char> &bytes);

/// Replaces the file at the path, whose lock the caller holds, atomically and durably. Owner and group keep it and
/// their permissions; whoever else could read it no longer can. With kNotStored the file is as it was and no other is
/// left.
int replace(const std::string &path, const Descriptor &old_file, const std::string &content);

}  // namespace xmlcfg
