// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "fake_sound.h"

#include <cstring>

namespace contract {

void FakeSound::card(int number, int entry_count, int channel_mode, int channel_count, const std::string &name) {
  std::lock_guard<std::mutex> guard(mutex_);
  _acard_info &info = cards_[number];
  info = {};
  info.entry_count = entry_count;
  info.channel_mode = channel_mode;
  info.channel_count = channel_count;
  name.copy(info.name, sizeof info.name);  // a name of 256 bytes has no terminator
}

void FakeSound::remove(int number) {
  std::lock_guard<std::mutex> guard(mutex_);
  cards_.erase(number);
}

int FakeSound::describe(int number, _acard_info *info) {
  std::lock_guard<std::mutex> guard(mutex_);
  journal_.add("card " + std::to_string(number));
  const auto found = cards_.find(number);
  if (found == cards_.end()) return -1;
  memset(static_cast<void *>(info), '?', record_size_);
  *info = found->second;
  return 0;
}

int FakeSound::setVolume(int number, int volume) {
  std::lock_guard<std::mutex> guard(mutex_);
  journal_.add("volume " + std::to_string(number) + " " + std::to_string(volume));
  return cards_.count(number) == 1 ? 0 : -1;
}

}  // namespace contract
