// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Text that is read line by line into a fixed buffer: from a child command or from a file, closed on every path.
#pragma once

#include <cstdio>

#include "core/text.h"

namespace usbdev {

class Lines {
 public:
  Lines(const Lines &) = delete;
  Lines &operator=(const Lines &) = delete;

  explicit operator bool() const { return stream_ != nullptr; }

  /// Reads the next line, or what fits of a longer one; false at the end or when nothing was opened.
  bool next(TextBuffer line);

  /// Reads on to the first line, or piece of a line, with a text in it; false when none has.
  bool skipTo(const char *part);

  /// The number in the first 127 bytes of the next line; `otherwise` where there is no line.
  int nextNumber(int otherwise);

  /// Never closes the stream, as a few readers have to.
  void leaveOpen() { stream_ = nullptr; }

 protected:
  explicit Lines(FILE *stream) : stream_(stream) {}
  ~Lines() = default;

  FILE *stream_;
};

class CommandLines : public Lines {
 public:
  CommandLines(const CommandLines &) = delete;
  CommandLines &operator=(const CommandLines &) = delete;
  /// Runs the command of a printf pattern; one longer than any that the host's names can make is not run.
  __attribute__((format(printf, 2, 3))) explicit CommandLines(const char *pattern, ...);
  ~CommandLines();
};

class FileLines : public Lines {
 public:
  FileLines(const FileLines &) = delete;
  FileLines &operator=(const FileLines &) = delete;
  explicit FileLines(const char *path);
  ~FileLines();
};

}  // namespace usbdev
