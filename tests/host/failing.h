// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

// Makes a call of the test program, or of a library that it uses, fail where a test wants it to.
#pragma once

#include <functional>
#include <string_view>

namespace failing {

constexpr std::string_view kAny;  // every call, but no memory
constexpr std::string_view kMemory = "memory";
constexpr int kEvery = 0;

/// What fails after the first one.
enum class Then { nothing, alike, everything };

/// From here on the number-th call of the name, or every one, fails with the error; after it those of the same name, or
/// everything that the name concerns, may fail too. An interruption (EINTR) concerns only the calls that wait.
void fail(std::string_view name, int number, int error, Then then = Then::nothing);

/// Does something immediately before the number-th call from here on, or before every one. It may call fail() or
/// doBefore() for what comes after it; its own calls do not count.
void doBefore(int number, std::function<void()> action);

/// Returns whether the moment came.
bool stop();

/// Returns whether it is between the two.
bool isOn();

/// What has been counted since then, also by the children of a process.
struct Progress {
  int counted = 0;
  int reached = 0;
  char first[32] = {};  // of the calls that failed
};
const Progress &progress();

/// Counts there from now on, until the process ends.
void countIn(Progress &shared);

/// Asked by the functions that stand in for others; sets errno when the answer is yes.
bool mustFail(std::string_view name, bool waits = false);

}  // namespace failing
