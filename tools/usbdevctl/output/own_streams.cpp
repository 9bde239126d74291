// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/own_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace usbdevctl {

namespace {

constexpr int kAbsent = -2;  // the program was started without the stream

/// The descriptor that a stream has from now on.
int ownCopyOf(int descriptor) {
  const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  return own < 0 && errno == EBADF ? kAbsent : own;
}

bool move(FILE *&stream, int own, int descriptor, int nothing) {
  if (own == kAbsent) return true;
  FILE *moved = own < 0 ? nullptr : fdopen(own, "w");
  if (moved == nullptr) return false;
  stream = moved;
  return dup2(nothing, descriptor) == descriptor;
}

}  // namespace

bool keepStreamsFromCommands() {
  const int own_output = ownCopyOf(STDOUT_FILENO);
  const int own_error = ownCopyOf(STDERR_FILENO);
  const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const bool moved =
      move(stdout, own_output, STDOUT_FILENO, nothing) && move(stderr, own_error, STDERR_FILENO, nothing);
  std::setvbuf(stderr, nullptr, _IONBF, 0);
  close(nothing);
  return moved;
}

}  // namespace usbdevctl
