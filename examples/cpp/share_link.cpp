// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Shares the stream of a profile, and prints the address of its page: share_link PROFILE
#include <iostream>
#include <usbdev/usbdev.hpp>

#include "number.hpp"

int main(int argc, char **argv) {
  const auto profile = numberIn(argc == 2 ? argv[1] : "");
  if (!profile) {
    std::cerr << "usage: share_link PROFILE\n";
    return 2;
  }
  // A link that was there is kept, and its token has to be read.
  const auto stored = usbdev::setShareLink(*profile, true);
  const auto link = stored ? usbdev::shareLink(*profile) : stored;
  if (!link) {
    std::cerr << "share_link: the stream cannot be shared\n";
    return 1;
  }
  std::cout << "/share?ssid=" << usbdev::textOf(link->ssid) << "&token=" << usbdev::textOf(link->token) << '\n';
  return 0;
}
