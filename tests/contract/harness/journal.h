// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the library did to its host, in order, one line each: "open r", "close", "popen CMD", "log 0 TEXT", ...
#pragma once

#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <vector>

namespace contract {

using Lines = std::vector<std::string>;

class Journal {
 public:
  void add(const std::string &line);
  // Something that no call of the library may ever do; the fixture reports it at the end of the test.
  void violation(const std::string &what);
  void clear();
  // Calls this after each line that is added, to look at the host as it is then.
  void watch(std::function<void(const std::string &)> observer);

  Lines lines() const;
  Lines violations() const;
  // The lines whose first word is one of these, in order: only({"popen", "system"}).
  Lines only(std::initializer_list<const char *> words) const;
  // The command texts given to popen and system, without that word.
  Lines commands() const;
  int count(const std::string &line) const;

 private:
  mutable std::mutex mutex_;
  std::function<void(const std::string &)> observer_;
  Lines lines_;
  Lines violations_;
};

}  // namespace contract
