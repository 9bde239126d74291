// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Prints the channels that have a device: list_channels
#include <algorithm>
#include <cctype>
#include <iostream>
#include <string>
#include <string_view>
#include <usbdev/usbdev.hpp>

namespace {

/// A device may call itself anything; what could control the terminal becomes a question mark.
std::string printable(std::string_view name) {
  std::string result(name);
  std::ranges::replace_if(
      result, [](unsigned char character) { return std::isprint(character) == 0; }, '?');
  return result;
}

}  // namespace

int main() {
  const auto channels = usbdev::channels();
  if (!channels) {
    std::cerr << "list_channels: the channels cannot be read\n";
    return 1;
  }
  for (int channel = 0; const _usbdev_entry &entry : *channels) {
    if (usbdev::hasDevice(entry)) {
      std::cout << "channel " << channel << "  " << usbdev::textOf(entry.usbslot) << "  "
                << printable(usbdev::textOf(entry.devname));
      if (entry.profile >= 0) std::cout << "  profile " << entry.profile;
      if (const auto other = usbdev::waitsFor(entry)) std::cout << "  waits for channel " << *other;
      std::cout << '\n';
    }
    ++channel;
  }
  return 0;
}
