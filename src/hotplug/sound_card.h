// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the host's sound library knows about a card.
#pragma once

#include <platform/alsa_ctl.h>

namespace usbdev {

class SoundCard {
 public:
  /// Asks for the card of that number; tests false when the host does not know it.
  explicit SoundCard(int number);

  explicit operator bool() const { return known_; }
  const _acard_info &info() const { return record_.info; }

 private:
  // A host's own library may know a longer record than this one, and fills all of its own.
  struct Record {
    _acard_info info;
    char room_behind[1024 - sizeof(_acard_info)];
  };

  Record record_ = {};
  bool known_;
};

}  // namespace usbdev
