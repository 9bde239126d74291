// SPDX-FileCopyrightText: 2026 The libusbdevlib authors
// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "failing.h"
#include "platform/orda_exec.h"
#include "private_host.h"
#include "processes.h"

namespace {

constexpr char kMark[] = "/mnt/run/mark";
constexpr int kStatus = 42;

int run() { return orda_exec(0, 0, 0, "/bin/sh", "-c", "echo >/mnt/run/mark; exit 42", nullptr); }

class AStepOfAProgramsStart : public testing::TestWithParam<const char *> {};

// Waiting for any child would find one of the caller's.
TEST_P(AStepOfAProgramsStart, ThatFailsLeavesTheProgramAndOtherChildrenAlone) {
  makeEmptyFolder("/mnt/run");
  const pid_t other = startChild([] { return 7; });
  failing::fail(GetParam(), 1, ENOMEM);
  const int result = run();
  EXPECT_TRUE(failing::stop());
  EXPECT_EQ(result, -1);
  EXPECT_FALSE(std::filesystem::exists(kMark));
  EXPECT_EQ(waitForChild(other), 7);
}

INSTANTIATE_TEST_SUITE_P(OfAnyKind, AStepOfAProgramsStart,
                         testing::Values("posix_spawn_file_actions_init", "posix_spawn_file_actions_addclosefrom_np",
                                         "posix_spawn"));

TEST(AWaitForAProgram, ThatASignalInterruptsIsGoneOnWith) {
  makeEmptyFolder("/mnt/run");
  failing::fail("waitpid", 1, EINTR);
  EXPECT_EQ(run(), kStatus);
  EXPECT_TRUE(failing::stop());
}

}  // namespace
