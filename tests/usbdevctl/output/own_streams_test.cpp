// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include "output/own_streams.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

/// What a program writes to a descriptor that moves its streams, runs a command and prints something itself.
std::string writtenTo(int descriptor) {
  std::array<int, 2> ends = {-1, -1};
  EXPECT_EQ(pipe(ends.data()), 0);
  std::fflush(nullptr);
  const pid_t program = fork();
  if (program == 0) {
    dup2(ends[1], descriptor);
    close(ends[1]);
    usbdevctl::keepStreamsFromCommands();
    const int noise = std::system("echo noise; echo noise >&2");
    std::fputs("own output", stdout);
    std::fputs("own error", stderr);
    std::fflush(stdout);
    _exit(noise);
  }
  close(ends[1]);
  std::string written;
  char byte = 0;
  while (read(ends[0], &byte, 1) == 1) written += byte;
  close(ends[0]);
  int status = -1;
  waitpid(program, &status, 0);
  EXPECT_EQ(status, 0);
  return written;
}

TEST(WhatACommandPrints, DoesNotReachStandardOutput) { EXPECT_EQ(writtenTo(STDOUT_FILENO), "own output"); }

TEST(WhatACommandPrints, DoesNotReachStandardError) { EXPECT_EQ(writtenTo(STDERR_FILENO), "own error"); }

}  // namespace
