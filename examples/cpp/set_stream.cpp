// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Sets the size and the frame rate of a profile's stream: set_stream PROFILE WIDTH HEIGHT FPS
#include <cstdio>
#include <cstdlib>
#include <usbdev/usbdev.hpp>

namespace {

int fail(const char *reason) {
  std::fprintf(stderr, "set_stream: %s\n", reason);
  return 1;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 5) return fail("usage: set_stream PROFILE WIDTH HEIGHT FPS");
  const int profile = std::atoi(argv[1]);
  const auto before = usbdev::streamInfo(profile);
  if (!before) return fail("the profile has no stream");

  _streaminfo wanted = *before;
  wanted.width = std::atoi(argv[2]);
  wanted.height = std::atoi(argv[3]);
  wanted.framerate = std::strtof(argv[4], nullptr);
  if (!(wanted.framerate > 0)) return fail("the rate is not above 0");
  // The camera may not have this rate: its closest one is stored.
  const auto rate = usbdev::closestRate(profile, wanted);
  if (!rate) return fail("the camera does not offer this size");
  if (!usbdev::setStream(profile, wanted, *before)) return fail("the settings were not stored");
  std::printf("profile %d streams %dx%d at %.2f\n", profile, wanted.width, wanted.height, static_cast<double>(*rate));
  return 0;
}
