// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Child processes of a test.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

/// Runs the work in a child, whose exit status is what the work returns.
pid_t startChild(const std::function<int()> &work);

/// Returns whether one of them has not ended yet; waitForChild() can still be asked about each.
bool anyIsRunning(const std::vector<pid_t> &children);

/// The exit status, or -1 for a child that a signal ended.
int waitForChild(pid_t child);

/// What a shell command printed on standard output, and how it ended.
struct Answer {
  std::string output;
  int status;
};
Answer runCommand(const std::string &command);
