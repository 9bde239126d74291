// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_commands.h"

namespace contract {

void FakeCommands::prints(const std::string &command, const std::string &output) {
  std::lock_guard<std::mutex> guard(mutex_);
  outputs_[command] = output;
}

void FakeCommands::cannotStart(const std::string &command) {
  std::lock_guard<std::mutex> guard(mutex_);
  unstartable_.insert(command);
}

void FakeCommands::does(const std::string &command, std::function<void()> effect) {
  std::lock_guard<std::mutex> guard(mutex_);
  effects_[command] = std::move(effect);
}

void FakeCommands::checkAllowed(const std::string &command) {
  const std::string reason = objection_ ? objection_() : "";
  if (!reason.empty()) journal_.violation(reason + ": " + command);
}

FILE *FakeCommands::open(const std::string &command, const std::string &mode) {
  if (mode[0] != 'r') journal_.violation("child command opened for writing: " + command);
  checkAllowed(command);
  journal_.add("popen " + command);
  std::string output;
  {
    std::lock_guard<std::mutex> guard(mutex_);
    if (unstartable_.count(command) != 0) return nullptr;
    output = outputs_[command];
  }
  return streams_.open(command, output);
}

int FakeCommands::close(FILE *stream) {
  journal_.add("pclose " + streams_.close(stream));
  return 0;
}

int FakeCommands::system(const std::string &command) {
  checkAllowed(command);
  journal_.add("system " + command);
  std::function<void()> effect;
  {
    std::lock_guard<std::mutex> guard(mutex_);
    effect = effects_[command];
  }
  if (effect) effect();
  return 0;
}

int FakeCommands::execute(const Lines &program) {
  std::string line = "exec";
  for (const std::string &argument : program) line += " " + argument;
  checkAllowed(line);
  journal_.add(line);
  return program_status_;
}

}  // namespace contract
