// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Prints the channels that have a device: list_channels
#include <iostream>
#include <usbdev/usbdev.hpp>

int main() {
  const auto channels = usbdev::channels();
  if (!channels) {
    std::cerr << "list_channels: the channels cannot be read\n";
    return 1;
  }
  for (int channel = 0; const _usbdev_entry &entry : *channels) {
    if (usbdev::hasDevice(entry)) {
      std::cout << "channel " << channel << "  " << usbdev::textOf(entry.usbslot) << "  "
                << usbdev::textOf(entry.devname);
      if (entry.profile >= 0) std::cout << "  profile " << entry.profile;
      if (const auto other = usbdev::waitsFor(entry)) std::cout << "  waits for channel " << *other;
      std::cout << '\n';
    }
    ++channel;
  }
  return 0;
}
