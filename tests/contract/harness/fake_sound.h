// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The host's sound cards, as libalsa_ctl.so describes them.
#pragma once

#include <platform/alsa_ctl.h>

#include <map>
#include <mutex>
#include <string>

#include "journal.h"

namespace contract {

class FakeSound {
 public:
  explicit FakeSound(Journal &journal) : journal_(journal) {}

  // A card that exists; one that was never described makes its query fail.
  void card(int number, int entry_count, int channel_mode, int channel_count, const std::string &name);
  void remove(int number);
  // The host's own record has this many bytes in all, and all are filled.
  void fillRecordsOf(size_t bytes) { record_size_ = bytes; }

  // The interface itself.
  int describe(int number, _acard_info *info);
  int setVolume(int number, int volume);

 private:
  Journal &journal_;
  std::mutex mutex_;
  std::map<int, _acard_info> cards_;
  size_t record_size_ = sizeof(_acard_info);
};

}  // namespace contract
