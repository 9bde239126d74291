// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// What the processes of the application do with the library, and the count that they keep of it in common memory. Each
// process has a profile, a time-out counter and a camera without a profile to itself, and all share the files.
#pragma once

#include <atomic>
#include <random>
#include <string>

namespace torture {

constexpr int kProcesses = 4;

/// What was done for certain: a process counts after the call, so one that is killed may have done one more.
struct Done {
  std::atomic<bool> stop;
  std::atomic<int> event_lines;
  std::atomic<int> timeouts[kProcesses];
  std::atomic<int> failures;
};

class Operations {
 public:
  Operations(int process, unsigned seed, Done &done) : process_(process), random_(seed), done_(done) {}

  /// Does one operation by chance.
  void next();

 private:
  void rename();
  void share();
  void renewShare();
  void store();
  void read();
  void countTimeout();
  void plugAndUnplug();
  void expectSuccess(int result) { done_.failures += result == 0 ? 0 : 1; }

  int process_;
  std::mt19937 random_;
  Done &done_;
};

/// Reports a camera's coming or going, after waiting for the lock that callers of the library have to hold around it.
int reportEvent(int process, bool plugged);
std::string portOf(int process);

}  // namespace torture
