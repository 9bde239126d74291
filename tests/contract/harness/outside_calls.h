// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The library's calls of everything outside it: a test may count them and let some of them fail.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace contract {

// Of send: takes only these. Other numbers are its result.
inline constexpr int kHalfOfTheBytes = 1;
// The failures of fgets, besides the end of its stream.
inline constexpr int kHalfALine = 1;
inline constexpr int kNonsense = 2;
// Of xmlcfg_get_str: the buffer has no room for a terminator. Otherwise it stays as it is.
inline constexpr int kFilled = 1;

class OutsideCalls {
 public:
  // What a call, such as popen of a command, does and returns instead of its work: the number of its failure. Nothing
  // lets it do its work.
  using Judge = std::function<std::optional<int>(const std::string &name, const std::string &object)>;

  // From now on asked before each call of this thread.
  void ask(Judge judge);
  void askNobody() { caller_ = std::thread::id(); }

  // The interface itself.
  std::optional<int> failure(const char *name, const std::string &object = "") const;

 private:
  std::atomic<std::thread::id> caller_{};
  Judge judge_;
};

}  // namespace contract
