// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The streams that the library has open on made-up contents: files and the outputs of child commands.
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "journal.h"

namespace contract {

class OpenStreams {
 public:
  ~OpenStreams();
  // A stream that reads this content.
  FILE *open(const std::string &name, const std::string &content);
  bool owns(FILE *stream) const { return !nameOf(stream).empty(); }
  // "" of a stream that it does not own.
  std::string nameOf(FILE *stream) const;
  // Closes a stream that it owns and returns its name.
  std::string close(FILE *stream);
  Lines names() const;

 private:
  struct Stream {
    std::string name;
    std::unique_ptr<std::string> content;  // stays where it is while the stream reads it
  };

  mutable std::mutex mutex_;
  std::map<FILE *, Stream> streams_;
};

}  // namespace contract
