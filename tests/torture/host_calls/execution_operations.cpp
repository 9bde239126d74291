// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include "operation.h"
#include "platform/orda_exec.h"
#include "private_host.h"

namespace {

constexpr int kStatus = 42;
constexpr char kMark[] = "/mnt/run/mark";

}  // namespace

std::vector<Operation> executionOperations() {
  const auto run = [] {
    return orda_exec(0, 0, 0, "/bin/sh", "-c", "echo >/mnt/run/mark; exit 42", nullptr) == kStatus;
  };
  return {{"RunAProgram", [] { makeEmptyFolder("/mnt/run"); }, run,
           [](Result result) { EXPECT_TRUE(!result.succeeded || readFile(kMark) == "\n"); }}};
}
