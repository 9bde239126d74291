// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "journal.h"

#include <algorithm>

namespace contract {

void Journal::add(const std::string &line) {
  std::function<void(const std::string &)> observer;
  {
    std::lock_guard<std::mutex> guard(mutex_);
    lines_.push_back(line);
    observer = observer_;
  }
  if (observer) observer(line);
}

void Journal::watch(std::function<void(const std::string &)> observer) {
  std::lock_guard<std::mutex> guard(mutex_);
  observer_ = std::move(observer);
}

void Journal::violation(const std::string &what) {
  std::lock_guard<std::mutex> guard(mutex_);
  violations_.push_back(what);
}

void Journal::clear() {
  std::lock_guard<std::mutex> guard(mutex_);
  lines_.clear();
}

Lines Journal::lines() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return lines_;
}

Lines Journal::violations() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return violations_;
}

Lines Journal::only(std::initializer_list<const char *> words) const {
  Lines chosen;
  for (const std::string &line : lines()) {
    const std::string first = line.substr(0, line.find(' '));
    if (std::find(words.begin(), words.end(), first) != words.end()) chosen.push_back(line);
  }
  return chosen;
}

Lines Journal::commands() const {
  Lines chosen = only({"popen", "system"});
  for (std::string &line : chosen) line.erase(0, line.find(' ') + 1);
  return chosen;
}

int Journal::count(const std::string &line) const {
  const Lines all = lines();
  return static_cast<int>(std::count(all.begin(), all.end(), line));
}

}  // namespace contract
