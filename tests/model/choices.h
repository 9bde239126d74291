// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// The choices of one operation, read from its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "world.h"

namespace model {

// One thing that happens: the first byte says what, the others choose its details.
using Operation = std::array<uint8_t, 12>;

class Choices {
 public:
  Choices(const Operation &operation, const World &world) : operation_(operation), world_(world) {}

  // One of 0 to n - 1.
  int below(int n) {
    const uint8_t byte = operation_[next_];
    if (next_ + 1 < operation_.size()) ++next_;
    return byte % n;
  }
  // True once in n times.
  bool rarely(int n) { return below(n) == n - 1; }

  template <typename Value>
  const Value &of(const std::vector<Value> &values) {
    return values[static_cast<size_t>(below(static_cast<int>(values.size())))];
  }

  int channel() { return below(USBDEV_CHANNELS); }
  int eventCode() { return of<int>({0, 1, 2, 3, 4, 5}); }
  // Mostly one that a channel has, now and then one that does not exist.
  int profile();
  // Mostly one that has a camera now.
  std::string port();

 private:
  const Operation &operation_;
  const World &world_;
  size_t next_ = 1;
};

}  // namespace model
