// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "listing_host.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

char listing_path[] = "/tmp/formats-bench.XXXXXX";

std::string rateLine(int rate) {
  char line[64];
  std::snprintf(line, sizeof line, "\t\t\tInterval: Discrete %.3fs (%d.000 fps)\n", 1.0 / rate, rate);
  return line;
}

std::string formatHead(int index) {
  return "\tIndex       : " + std::to_string(index) +
         "\n\tType        : Video Capture\n\tPixel Format: 'MJPG' (compressed)\n\tName        : Motion-JPEG\n\n";
}

/// Formats of thirty sizes with fifteen rates each, the last one cut off: all of it is kept.
std::string makeListing() {
  std::string text = "ioctl: VIDIOC_ENUM_FMT\n";
  int lines = 1;
  for (int format = 0; lines < kListingLines; ++format) {
    text += formatHead(format);
    lines += 5;
    for (int size = 1; size <= kListingSizes && lines < kListingLines; ++size) {
      text += "\t\tSize: Discrete " + std::to_string(64 * size) + "x" + std::to_string(36 * size) + "\n";
      ++lines;
      for (int rate = 60; rate > 0 && lines < kListingLines; rate -= 4, ++lines) text += rateLine(rate);
    }
  }
  return text;
}

void writeListing() {
  const int descriptor = mkstemp(listing_path);
  std::FILE *file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
  if (file == nullptr) std::abort();
  std::fputs(makeListing().c_str(), file);
  std::fclose(file);
}

struct Listing {
  Listing() { writeListing(); }
  ~Listing() { std::remove(listing_path); }
  Listing(const Listing &) = delete;
  Listing &operator=(const Listing &) = delete;
} const kListing;

}  // namespace

extern "C" {

std::FILE *popen(const char *command, const char *mode) {
  return std::fopen(std::strcmp(command, kListingQuery) == 0 ? listing_path : "/dev/null", mode);
}

int pclose(std::FILE *stream) { return std::fclose(stream); }

int system(const char *) { return 0; }
}
