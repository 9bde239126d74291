// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Shares the stream of a profile, and prints the address of its page: share_link PROFILE
#include <cstdlib>
#include <iostream>
#include <usbdev/usbdev.hpp>

int main(int argc, char **argv) {
  if (argc != 2) {
    std::cerr << "usage: share_link PROFILE\n";
    return 1;
  }
  const int profile = std::atoi(argv[1]);
  if (!usbdev::setShareLink(profile, true)) {
    std::cerr << "share_link: the stream cannot be shared\n";
    return 1;
  }
  // A link that was there is kept, and its token has to be read.
  const auto link = usbdev::shareLink(profile);
  if (!link) return 1;
  std::cout << "/share?ssid=" << usbdev::textOf(link->ssid) << "&token=" << usbdev::textOf(link->token) << '\n';
  return 0;
}
