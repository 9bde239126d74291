// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Sets the size and the frame rate of a profile's stream: set_stream PROFILE WIDTH HEIGHT FPS
#include <cstdio>
#include <cstdlib>
#include <usbdev/usbdev.hpp>

#include "number.hpp"

namespace {

int fail(const char *reason) {
  std::fprintf(stderr, "set_stream: %s\n", reason);
  return 1;
}

// Stores the settings, with the closest rate that the camera has.
int set(int profile, int width, int height, float framerate) {
  const auto before = usbdev::streamInfo(profile);
  if (!before) return fail("the profile has no stream");

  _streaminfo wanted = *before;
  wanted.width = width;
  wanted.height = height;
  wanted.framerate = framerate;
  const auto rate = usbdev::closestRate(profile, wanted);
  if (!rate) return fail("the camera does not offer this size");
  if (!usbdev::setStream(profile, wanted, *before)) return fail("the settings were not stored");
  std::printf("profile %d streams %dx%d at %.2f\n", profile, width, height, static_cast<double>(*rate));
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  const bool is_complete = argc == 5;
  const auto profile = numberIn(is_complete ? argv[1] : "");
  const auto width = numberIn(is_complete ? argv[2] : "");
  const auto height = numberIn(is_complete ? argv[3] : "");
  if (!profile || !width || !height) {
    std::fputs("usage: set_stream PROFILE WIDTH HEIGHT FPS\n", stderr);
    return 2;
  }
  char *end = nullptr;
  const float framerate = std::strtof(argv[4], &end);
  if (*end != '\0' || !(framerate > 0)) return fail("the rate is not a number above 0");
  return set(*profile, *width, *height, framerate);
}
