// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "format/format_query.h"

#include <usbdev/devices.h>

#include <array>
#include <cstdio>
#include <memory>

namespace usbdevctl {

namespace {

constexpr std::size_t kMostOutput = 1U << 20U;

struct ClosePipe {
  void operator()(FILE *pipe) const { pclose(pipe); }
};

}  // namespace

CameraFormats readFormats(int node) {
  CameraFormats camera;
  int over_60 = 0;
  camera.count = mn_get_usbchn_fmts(node, camera.formats.data(), &over_60);
  camera.over_60 = over_60 != 0;
  return camera;
}

std::string outputOf(const std::string &command) {
  const std::unique_ptr<FILE, ClosePipe> pipe(popen(command.c_str(), "re"));
  std::string output;
  std::array<char, 4096> piece;
  while (pipe && output.size() < kMostOutput) {
    const std::size_t bytes = std::fread(piece.data(), 1, piece.size(), pipe.get());
    if (bytes == 0) break;
    output.append(piece.data(), bytes);
  }
  return output;
}

std::string formatListing(int node) {
  return outputOf("/usr/bin/v4l2-ctl -d /dev/video" + std::to_string(node) + " --list-formats-ext 2>&1");
}

}  // namespace usbdevctl
