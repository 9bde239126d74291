// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// An input, taken apart: texts from its front, divided by form feeds, and numbers from its end, so that any text is an
// input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace fuzz {

class Input {
 public:
  Input(const std::uint8_t *data, std::size_t size) : left_(reinterpret_cast<const char *>(data), size) {}

  bool isEmpty() const { return left_.empty(); }

  /// Takes a number from 0 to limit - 1, of at most 256; 0 where nothing is left.
  int number(int limit) {
    if (left_.empty()) return 0;
    const auto last = static_cast<unsigned char>(left_.back());
    left_.remove_suffix(1);
    return last % limit;
  }

  /// Takes the text before the next form feed, or all that is left.
  std::string text() {
    const std::size_t end = left_.find('\f');
    std::string taken(left_.substr(0, end));
    left_.remove_prefix(end == std::string_view::npos ? left_.size() : end + 1);
    return taken;
  }

 private:
  std::string_view left_;
};

}  // namespace fuzz
