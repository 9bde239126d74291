// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// A made-up host whose tools and files give what a fuzzer made, and the rules that hold after every call of the
// library.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "host.h"

namespace fuzz {

class FuzzedHost : public contract::Host {
 public:
  FuzzedHost() = default;
  FuzzedHost(const FuzzedHost &) = delete;
  FuzzedHost &operator=(const FuzzedHost &) = delete;
  /// Expects that everything is closed again, and that no command has more for a shell than its own pattern.
  ~FuzzedHost();

  /// On purpose, the library leaves files or commands open that begin so.
  void allowLeftOpen(const std::string &start) { allowed_open_.push_back(start); }

 private:
  bool mayStayOpen(const std::string &path) const;

  std::vector<std::string> allowed_open_;
};

/// What a reader with a buffer of that size gets of a text: its lines, long ones in pieces, each up to its first zero.
std::vector<std::string> linesOf(const std::string &text, std::size_t size);

/// What grep prints of it.
std::string linesWith(const std::string &text, const std::string &part);

/// Is the text terminated within its array, and is that all that follows the terminator's place?
template <std::size_t Size>
bool isTerminated(const char (&field)[Size]) {
  return std::string(field, Size).find('\0') != std::string::npos;
}

}  // namespace fuzz
