// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Child commands, answered from a script by their exact text. A command without a script prints nothing.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "journal.h"
#include "open_streams.h"

namespace contract {

class FakeCommands {
 public:
  // Asked before a command runs: why it may not run now, or "".
  using Objection = std::function<std::string()>;

  FakeCommands(Journal &journal, Objection objection) : journal_(journal), objection_(std::move(objection)) {}

  // What popen of this command prints.
  void prints(const std::string &command, const std::string &output);
  // popen of this command gives no stream.
  void cannotStart(const std::string &command);
  // What system of this command does besides being recorded.
  void does(const std::string &command, std::function<void()> effect);
  // What every program that is run without a shell returns.
  void programsReturn(int status) { program_status_ = status; }
  // For the few operations that run commands inside a critical section by their description.
  void allowInsideCriticalSection() { objection_ = nullptr; }

  // Commands whose stream is open now.
  Lines leftOpen() const { return streams_.names(); }

  // The interface itself.
  FILE *open(const std::string &command, const std::string &mode);
  bool owns(FILE *stream) const { return streams_.owns(stream); }
  std::string nameOf(FILE *stream) const { return streams_.nameOf(stream); }
  int close(FILE *stream);
  int system(const std::string &command);
  int execute(const Lines &program);

 private:
  void checkAllowed(const std::string &command);

  Journal &journal_;
  Objection objection_;
  mutable std::mutex mutex_;
  std::map<std::string, std::string> outputs_;
  std::set<std::string> unstartable_;
  std::map<std::string, std::function<void()>> effects_;
  int program_status_ = 0;
  OpenStreams streams_;
};

}  // namespace contract
